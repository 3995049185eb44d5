/// A median blur that spares busy areas: each pixel is weighed by how much its surroundings scatter.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// For each plane Y of `image` on its own, with D = the mean distance of the window's samples from their median, both
/// at `testRadius`:
///
///   weight(y, x) = ((D(y, x) - least D) / largest D) ^ blurring, in single precision; a largest D below 0.000001 is
///   raised to it;
///   result = trunc(Y * weight + M * (1 - weight) + 0.5), with M = the median of Y at `blurRadius`.
///
/// So the calmest pixels become the median and the busiest keep their detail.
/// @param blurring    0..1; the smaller, the less is blurred, and 0 gives the picture back.
/// @param testRadius, blurRadius  in pixels, >= 1; where they are equal one median serves both.
/// @param image       "RGB" or "L".
/// @return a picture of the mode and size of `image`.
/// @throws Plugin::Interrupted; the stop is checked first, after each of the two measuring filters and after the
/// weights.
ChannelSet SupersmartBlur(float blurring, int testRadius, int blurRadius, const ChannelSet& image);

}  // namespace quentara
