/// Luma and two colour differences, by the BT.709 weights 0.2126, 0.7152 and 0.0722.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// @param picture  "RGB".
/// @return a box of three planes, of mode "HSV" although no such colours: luma * 255 + 0.5, so that truncating rounds
/// it; blue difference U = (B - Y) / 1.8556 and red difference V = (R - Y) / 1.5748, -0.5..0.5, for channels 0..1.
FloatChannelSet RgbToLumaChroma(const ChannelSet& picture);

/// The way back: channels limited to 0..255 and rounded half up.
/// @param luma  0..255, without the 0.5 that `RgbToLumaChroma` adds.
/// @param blueDifference, redDifference  -0.5..0.5, planes of the size of `luma`.
/// @return an "RGB" picture.
ChannelSet LumaChromaToRgb(const FloatPlane& luma, const FloatPlane& blueDifference, const FloatPlane& redDifference);

}  // namespace quentara
