/// Sharpening against the mean of the neighbours.
#pragma once

#include "render/plane.h"

namespace quentara {

/// result = gain * v - (gain - 1) * mean of the neighbours of v, not limited.
///
/// With c the number of the eight neighbours that lie inside the plane, the terms of the 3 x 3 block are added one by
/// one in row order, v * c * gain for the centre and -(gain - 1) times its value for each neighbour, and the sum is
/// divided by c. A sample without neighbours is kept. All in single precision.
/// @param gain  >= 1; 1 gives the plane back, up to rounding.
FloatPlane Sharpen3x3(float gain, const FloatPlane& plane);

}  // namespace quentara
