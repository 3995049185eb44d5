/// Window filters in bands of rows on the workers. The bytes are those of one call on the whole planes, whatever the
/// number of workers, and each row is computed once.
#pragma once

#include "render/plane.h"

namespace quentara {

/// `MedianFilter` and `MedianDeviationFilter`.
BytePlane MedianInBands(int radius, const BytePlane& plane);
FloatPlane MedianDeviationInBands(int radius, const BytePlane& values, const BytePlane& medians);

/// `MaxFilter`, `MinFilter` and `BoxMeanFilter`.
BytePlane MaxInBands(int radius, const BytePlane& plane);
BytePlane MinInBands(int radius, const BytePlane& plane);
BytePlane BoxMeanInBands(int radius, const BytePlane& plane);

/// `ModeFilter` and `RangeModeFilter2`.
BytePlane ModeInBands(int radius, const BytePlane& plane);
BytePlane RangeModeInBands(int radius, const BytePlane& centre, const BytePlane& values, int limit);

/// One pass of an iterated range filter.
struct RangePass {
  int index;      ///< which pass it is, from 0
  bool square;    ///< the window is a square; otherwise a line, vertical in even passes and horizontal in odd ones
  int radius;     ///< of this pass, in pixels
  int limit;      ///< of this pass, in sample values
  int bandCount;  ///< one number for the whole run: `BandCount` with its largest radius
};

/// `RangeMeanFilter2` or `RangeMeanLine2`, and `RangeMedianFilter2` or `RangeMedianLine2`.
BytePlane RangeMeanPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values);
BytePlane RangeMedianPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values);

}  // namespace quentara
