/// The window filters by their definitions: every window gathered and judged on its own. The judge of every kernel.
#pragma once

#include "imageops/line_direction.h"
#include "render/plane.h"

namespace quentara {

/// A clipped window reaching so many rows and columns from its centre, and at most `steps` of both together.
/// The results have only every so many'th row and column: judging all windows may take long.
struct Reach {
  int rows, columns, steps, every = 1;
};
Reach Square(int radius, int every = 1);
Reach Diamond(int radius, int every = 1);
Reach Line(int radius, LineDirection direction);

BytePlane MedianByDefinition(Reach reach, const BytePlane& plane);
FloatPlane MedianDeviationByDefinition(Reach reach, const BytePlane& values, const BytePlane& medians);
BytePlane RangeMeanByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane RangeMedianByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane RangeModeByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane MaxByDefinition(Reach reach, const BytePlane& plane);
BytePlane MinByDefinition(Reach reach, const BytePlane& plane);

}  // namespace quentara
