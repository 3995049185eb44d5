/// A paint style of very few tones: every pixel keeps its hue and saturation, its brightness is one of eight.
#pragma once

#include "imageops/skin_tones.h"
#include "render/channel_set.h"

namespace quentara {

/// Cuts the cube of red, green and blue at one level into octants and gives all pixels of an octant one value (that of
/// HSV): the lower median of their values.
///
/// The level is floor(k) + 0.5, in single precision. When at least a tenth of the pixels are skin, k = median +
/// deviation * spread, of their BT.601 luma (`ToneLevels`); otherwise k = 112 + 15 * deviation.
///
/// The plane of octant values goes through one pass of `BoxSmooth3`, to soften its edges. With `temporalFix` it does
/// not; instead the values of three cuts, at the level and 2 above and 2 below it, are averaged with weights 0.5, 0.25
/// and 0.25, so that a pixel near the level flickers less from frame to frame.
/// @param skinPoints  of the frame, any of whose pixels it may list.
/// @param deviation   how far the level lies from the median of the skin, in spreads; -2.5..1.5.
/// @param picture     "RGB".
/// @return an "RGB" picture.
ChannelSet FlatDetailed(const PointList& skinPoints, float deviation, bool temporalFix, const ChannelSet& picture);

}  // namespace quentara
