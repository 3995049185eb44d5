/// The line extractor of the outlines that follow the picture's tones.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// How bright each pixel is against its surroundings, as an outline mask of mode "L": near 255 where the picture is as
/// bright as the level around it, falling in proportion where it is darker, 0 in black regions.
///
/// With L the BT.601 luma and M the maximum filter of its median filter, both of radius `thickness`, a pixel is the
/// S-curve (`SoftLightSelf`) of min(256 * L / (M + 1), 255), rounded; where M is below 3, of M itself.
///
/// High quality takes the same measure along the diagonals, too: the luma is pasted into a black square of odd side,
/// with a frame of its own border samples, rotated by 45 degrees, measured, rotated back, and averaged in, rounding
/// half up. The window that is cut from the square lies two rows below and one column right of where the luma was
/// pasted, and the first two rows of the mask keep the measure of fast quality.
///
/// Checks for a stop at the start and after each pass of the filters.
/// @param thickness  radius in pixels, >= 1.
/// @param image      "RGB", or "L", whose plane is taken as the luma.
/// @param quality    a `Quality`.
ChannelSet ThickLineMask(int thickness, const ChannelSet& image, int quality);

}  // namespace quentara
