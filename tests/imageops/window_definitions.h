/// The window filters by their definitions: every window gathered and judged on its own. The judge of every kernel.
#pragma once

#include "imageops/line_direction.h"
#include "render/plane.h"

namespace quentara {

/// A clipped window reaching so many rows and columns from its centre, and at most `steps` of both together.
struct Reach {
  int rows, columns, steps;
};
Reach Square(int radius);
Reach Diamond(int radius);
Reach Line(int radius, LineDirection direction);

BytePlane MedianByDefinition(Reach reach, const BytePlane& plane);
FloatPlane MedianDeviationByDefinition(Reach reach, const BytePlane& values, const BytePlane& medians);
BytePlane RangeMeanByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane RangeMedianByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane RangeModeByDefinition(int radius, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane MaxByDefinition(int radius, const BytePlane& plane);
BytePlane MinByDefinition(int radius, const BytePlane& plane);
BytePlane BoxMeanByDefinition(int radius, const BytePlane& plane);

}  // namespace quentara
