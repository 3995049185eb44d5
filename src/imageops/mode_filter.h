/// The most frequent sample of a square window: the mode, and the mode near a centre value.
///
/// The window of (y, x) is the square of side 2 * radius + 1 around it, clipped to the plane, never padded. Unlike a
/// mean or a median a mode jumps at the border between two areas, without a ramp. Both filters run on the calling
/// thread, for a whole plane or for some rows of the result, which depend on rows up to `radius` away:
/// banded_filters.h spreads them over the workers.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the most frequent sample of the window; of equally frequent ones the lowest.
///
/// @param radius  in pixels, >= 0; 0 gives the plane back.
/// @param plane   height x width, samples 0..255, of any size.
/// @return same size, samples 0..255.
BytePlane ModeFilter(int radius, const BytePlane& plane);
void ModeFilter(int radius, const BytePlane& plane, ByteRows result);

/// result(y, x) = the most frequent of those samples v of the window in `values` for which
/// |v - centre(y, x)| <= limit; of equally frequent ones the lowest.
///
/// @param radius  in pixels, >= 0.
/// @param centre  height x width, samples 0..255.
/// @param values  same size; values(y, x) is within `limit` of centre(y, x), so that no window is empty.
/// @param limit   in sample values, >= 0.
/// @return same size, samples 0..255.
BytePlane RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit);
void RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result);

}  // namespace quentara
