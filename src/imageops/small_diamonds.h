/// Small diamond windows, sample by sample for many pixels at a time: no histogram, no branch on the data.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the median, as diamond_filters.h defines it, except in the corners (within `radius` of two edges),
/// where it is left to the caller. By sorting networks after Batcher (1968).
/// @param radius  1 .. kMostNetworkDiamond.
/// @param plane   at least 2 * radius + kMostByteLanes rows and columns.
void DiamondMedianFromNetworks(int radius, const BytePlane& plane, BytePlane& result);

/// result = the mean distance, as diamond_filters.h defines it.
void DiamondDeviationFromDirectSums(int radius, const BytePlane& values, const BytePlane& medians, FloatPlane& result);

}  // namespace quentara
