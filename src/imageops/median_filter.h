/// The median of a square window, and the mean distance of a window's samples from a given median.
///
/// The window of (y, x) is the square of side 2 * radius + 1 around it, clipped to the plane, never padded; n is its
/// number of samples. Both filters run on the calling thread, for a whole plane or for some rows of the result, which
/// depend on rows up to `radius` away: banded_filters.h spreads them over the workers.
///
/// Method: small windows by sorting networks, see median_networks.h; larger ones by column histograms in two levels,
/// after Perreault and Hebert, "Median filtering in constant time" (2007), whose cost per pixel does not grow with the
/// radius.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the sample of rank n / 2, counted from 0, in the sorted window: the middle one, and of two middle
/// ones the larger. Only in the corners (within `radius` rows of the top or bottom edge and within `radius` columns of
/// the left or right edge) it is rank (n - 1) / 2, of two middle samples the smaller.
///
/// @param radius  in pixels, >= 0; 0 gives the plane back.
/// @param plane   height x width, samples 0..255, of any size.
/// @return same size, samples 0..255.
BytePlane MedianFilter(int radius, const BytePlane& plane);
void MedianFilter(int radius, const BytePlane& plane, ByteRows result);

/// result(y, x) = the mean of |v - medians(y, x)| over the samples v of the window in `values`: their sum in single
/// precision divided by n.
///
/// @param radius   in pixels, >= 0.
/// @param values   height x width, samples 0..255.
/// @param medians  same size; any samples 0..255 will do, they need not be medians.
/// @return same size, samples 0..255 with fractions.
FloatPlane MedianDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians);
void MedianDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians, FloatRows result);

}  // namespace quentara
