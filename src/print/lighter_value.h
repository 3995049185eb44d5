/// Brightening of a picture's value alone, without analysing the frame.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Raises the mid-tones: with v the value of HSV as a float and t = 1 - v / 255, the value becomes
///   w * lighter + v * (1 - lighter),  w = v * t + 255 * (1 - t),
/// in single precision. Hue and saturation stay; black and white stay.
/// @param lighter  0..1.
/// @param picture  "RGB".
/// @return an "RGB" picture.
ChannelSet LighterValue(float lighter, const ChannelSet& picture);

}  // namespace quentara
