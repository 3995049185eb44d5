/// The range of a plane's samples.
#pragma once

#include "render/plane.h"

namespace quentara {

struct SampleRange {
  float least, largest;
};

/// The least and the largest sample, sought on all workers.
/// @param plane  of at least one sample, none of them negative (nor -0) or a NaN.
SampleRange RangeOf(const FloatPlane& plane);

}  // namespace quentara
