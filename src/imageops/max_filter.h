/// The largest and the smallest sample of a square window: grey dilation and erosion.
///
/// The window of (y, x) is the square of side 2 * radius + 1 around it, clipped to the plane. Both filters run on the
/// calling thread, for a whole plane or for some rows of the result, which depend on rows up to `radius` away. Method:
/// separable. Down the columns the prefix and suffix maxima of van Herk (1992) and Gil and Werman (1993), three
/// comparisons a sample whatever the radius; along the row that they leave, maxima of runs of 1, 2, 4, ... samples
/// until two of them cover the window.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = the largest sample of the window.
///
/// @param radius  in pixels, >= 0; 0 gives the plane back.
/// @param plane   height x width, samples 0..255, of any size.
/// @return same size, samples 0..255.
BytePlane MaxFilter(int radius, const BytePlane& plane);
void MaxFilter(int radius, const BytePlane& plane, ByteRows result);

/// result(y, x) = the smallest sample of the window; the rest as above.
BytePlane MinFilter(int radius, const BytePlane& plane);
void MinFilter(int radius, const BytePlane& plane, ByteRows result);

}  // namespace quentara
