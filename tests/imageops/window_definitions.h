/// The window filters by their definitions: every window gathered and judged on its own. The judge of every kernel.
#pragma once

#include "imageops/line_direction.h"
#include "render/plane.h"

namespace quentara {

/// A clipped window reaching so many rows and columns from its centre.
struct Reach {
  int rows, columns;
};
Reach Square(int radius);
Reach Line(int radius, LineDirection direction);

BytePlane MedianByDefinition(int radius, const BytePlane& plane);
FloatPlane MedianDeviationByDefinition(int radius, const BytePlane& values, const BytePlane& medians);
BytePlane RangeMeanByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane RangeMedianByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit);
BytePlane MaxByDefinition(int radius, const BytePlane& plane);

}  // namespace quentara
