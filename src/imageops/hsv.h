/// The hexagonal HSV colour model of Smith (1978).
#pragma once

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

}  // namespace quentara
