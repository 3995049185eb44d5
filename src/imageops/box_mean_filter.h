/// The mean of a square window.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result(y, x) = trunc(s / n + 0.5) in single precision, with s the sum and n the number of the samples in the square
/// of side 2 * radius + 1 around (y, x), clipped to the plane.
///
/// Runs on the calling thread, for a whole plane or for some rows of the result, which depend on rows up to `radius`
/// away. Method: running sums down the columns and along the rows, so the cost does not depend on the radius.
///
/// @param radius  in pixels, >= 0; 0 gives the plane back. A window has at most 65536 samples: their sum is then exact.
/// @param plane   height x width, samples 0..255, of any size.
/// @return same size, samples 0..255.
BytePlane BoxMeanFilter(int radius, const BytePlane& plane);
void BoxMeanFilter(int radius, const BytePlane& plane, ByteRows result);

}  // namespace quentara
