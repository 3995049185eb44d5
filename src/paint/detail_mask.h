/// Where a picture is busy.
#pragma once

#include "render/plane.h"

namespace quentara {

/// With d the `MedianDeviationFilter` of radius 1 about the `MedianFilter` of radius 1, and lo and hi its least and
/// largest sample (hi at least 0.000001): d' = (d - lo) / hi and
///   result = trunc(255 * (tanh(50 * d'^(1 - foreground) - 25) + 1) / 2 + 0.5)
/// in single precision, power and tanh rounded from double: a steep curve from 0 in flat places to 255 in busy ones.
/// @param plane       samples 0..255, of any size but empty.
/// @param foreground  0..1: the higher, the more places count as busy; 1 gives 255 everywhere.
BytePlane DetailMask(const BytePlane& plane, float foreground);

}  // namespace quentara
