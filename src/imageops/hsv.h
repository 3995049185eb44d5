/// The hexagonal HSV colour model of Smith (1978).
#pragma once

#include <array>

#include "render/channel_set.h"

namespace quentara {

/// @param picture  "RGB".
/// @return mode "HSV": hue in degrees, 0 <= H < 360, and 0 where S is 0; saturation (V - min) / V, 0..1, and 0 where V
/// is 0; value max(R, G, B), 0..255. All in single precision.
FloatChannelSet RgbToHsv(const ChannelSet& picture);

/// The way back: channels rounded half up to bytes.
/// @param hue, saturation, value  sets of one size whose plane 0 is read, with the ranges above; a hue of 360 is 0.
/// @return an "RGB" picture.
ChannelSet HsvToRgb(const FloatChannelSet& hue, const FloatChannelSet& saturation, const FloatChannelSet& value);

/// The picture with its hue and saturation and another value: `HsvToRgb` of H and S of `RgbToHsv`(picture) and `value`,
/// in one pass over both.
/// @param picture  "RGB".
/// @param value    of its size, 0..255.
/// @return an "RGB" picture.
ChannelSet ReplaceValue(const ChannelSet& picture, const BytePlane& value);
ChannelSet ReplaceValue(const ChannelSet& picture, const FloatPlane& value);

/// A new value, 0..255, for each value that a pixel of bytes can have.
using ValueMap = std::array<float, 256>;

/// The same with value = map[max(R, G, B)].
ChannelSet MapValue(const ChannelSet& picture, const ValueMap& map);

}  // namespace quentara
