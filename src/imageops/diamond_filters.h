/// The median and the mean deviation of a diamond window.
///
/// The window of (y, x) is the set of pixels (y + dy, x + dx) inside the plane with |dy| + |dx| <= radius, never
/// padded; n is its number of samples, radius^2 + (radius + 1)^2 where nothing is cut off. Both filters run on the
/// calling thread; a result depends on rows up to `radius` away. Method: small windows are
/// sorted by networks (Batcher, 1968) and summed sample by sample, many pixels at once in the lanes of a vector; large
/// ones are taken along the diagonals of the plane, where they are squares for the column histograms of
/// Perreault and Hebert (2007).
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the sample of rank n / 2, counted from 0, in the sorted window: the middle one, and of two middle
/// ones the larger. Only in the corners (within `radius` rows of the top or bottom edge and within `radius` columns of
/// the left or right edge) it is rank (n - 1) / 2, of two middle samples the smaller.
///
/// @param radius  in pixels, 0..126, or up to 180 if a side of the plane is 127 or less; 0 gives the plane back.
/// @param plane   height x width, samples 0..255, of any size.
/// @return same size, samples 0..255.
BytePlane DiamondMedianFilter(int radius, const BytePlane& plane);

/// result(y, x) = the mean of |v - medians(y, x)| over the samples v of the window in `values`: their sum in single
/// precision divided by n.
///
/// @param radius   in pixels, 0..126, or up to 180 if a side of the plane is 127 or less.
/// @param values   height x width, samples 0..255.
/// @param medians  same size; any samples 0..255 will do, they need not be medians.
/// @return same size, samples 0..255 with fractions.
FloatPlane DiamondDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians);

}  // namespace quentara
