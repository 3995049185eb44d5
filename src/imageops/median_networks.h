/// Medians of small windows by sorting networks: no histogram, no branch on the data.
///
/// Method: Adams, "Fast median filters using separable sorting networks" (2021), in tiles of 2 x 2 pixels. See
/// median_networks_target.cpp.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the median of the square window, as median_filter.h defines it, except in the corners (within
/// `radius` of two edges), where it is left to the caller.
///
/// @param radius  1 .. kMostNetworkRadius.
/// @param plane   at least 2 * radius + 1 rows and columns.
void MedianFromNetworks(int radius, const BytePlane& plane, ByteRows result);

}  // namespace quentara
