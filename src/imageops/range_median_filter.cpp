#include "imageops/range_median_filter.h"

#include <algorithm>
#include <cassert>
#include <numeric>

#include "imageops/sliding_histogram.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

BytePlane RangeMedian(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  assert(reach.rows >= 0 && reach.columns >= 0 && limit >= 0 && SameSize(centre, values));
  BytePlane result(values.rows(), values.cols());
  SlideHistogram(reach, values, [&](int y, int x, const Histogram& histogram) {
    const int c = Row(centre, y)[x], lowest = std::max(c - limit, 0), highest = c + std::min(limit, 255 - c);
    const int count = std::accumulate(&histogram[lowest], &histogram[highest] + 1, 0);
    assert(count > 0);
    Row(result, y)[x] = static_cast<unsigned char>(ValueOfRank(histogram, (count - 1) / 2, lowest));
  });
  return result;
}

}  // namespace

BytePlane RangeMedianFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  return RangeMedian(SquareReach(radius), centre, values, limit);
}

BytePlane RangeMedianLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit,
                           LineDirection direction) {
  return RangeMedian(LineReach(radius, direction), centre, values, limit);
}

}  // namespace quentara
