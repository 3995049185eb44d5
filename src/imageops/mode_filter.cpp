#include "imageops/mode_filter.h"

#include <algorithm>
#include <cassert>

#include "imageops/sliding_histogram.h"
#include "imageops/window_reach.h"

namespace quentara {

BytePlane ModeFilter(int radius, const BytePlane& plane) {
  return RangeModeFilter2(radius, plane, plane, 255);
}

BytePlane RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  assert(radius >= 0 && limit >= 0 && SameSize(centre, values));
  BytePlane result(values.rows(), values.cols());
  SlideHistogram(SquareReach(radius), values, [&](int y, int x, const Histogram& histogram) {
    const int c = Row(centre, y)[x], lowest = std::max(c - limit, 0), highest = c + std::min(limit, 255 - c);
    const auto mode = std::max_element(&histogram[lowest], &histogram[highest] + 1);  // the first of the largest
    assert(*mode > 0);
    Row(result, y)[x] = static_cast<unsigned char>(mode - histogram.data());
  });
  return result;
}

}  // namespace quentara
