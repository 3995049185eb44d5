/// One pass of an iterated range filter, in bands of rows on the workers.
#pragma once

#include "render/plane.h"

namespace quentara {

struct RangePass {
  int index;      ///< which pass it is, from 0
  bool square;    ///< the window is a square; otherwise a line, vertical in even passes and horizontal in odd ones
  int radius;     ///< of this pass, in pixels
  int limit;      ///< of this pass, in sample values
  int bandCount;  ///< one number for the whole run: `BandCount` with its largest radius
};

/// `RangeMeanFilter2` or `RangeMeanLine2`, and `RangeMedianFilter2` or `RangeMedianLine2`. The result does not depend
/// on the band count.
BytePlane RangeMeanPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values);
BytePlane RangeMedianPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values);

}  // namespace quentara
