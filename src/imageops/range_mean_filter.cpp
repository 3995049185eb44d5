#include "imageops/range_mean_filter.h"

#include <algorithm>
#include <cassert>

#include "imageops/sliding_histogram.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

BytePlane RangeMean(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  assert(reach.rows >= 0 && reach.columns >= 0 && limit >= 0 && SameSize(centre, values));
  BytePlane result(values.rows(), values.cols());
  SlideHistogram(reach, values, [&](int y, int x, const Histogram& histogram) {
    const int c = Row(centre, y)[x], highest = c + std::min(limit, 255 - c);
    float sum = 0.0f, count = 0.0f;
    for (int v = std::max(c - limit, 0); v <= highest; ++v) {
      sum += static_cast<float>(histogram[v] * v);
      count += static_cast<float>(histogram[v]);
    }
    Row(result, y)[x] = ToByte(sum / count);
  });
  return result;
}

}  // namespace

BytePlane RangeMeanFilter(int radius, const BytePlane& plane, int limit) {
  return RangeMean(SquareReach(radius), plane, plane, limit);
}

BytePlane RangeMeanFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  return RangeMean(SquareReach(radius), centre, values, limit);
}

BytePlane RangeMeanLine(int radius, const BytePlane& plane, int limit, LineDirection direction) {
  return RangeMean(LineReach(radius, direction), plane, plane, limit);
}

BytePlane RangeMeanLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit,
                         LineDirection direction) {
  return RangeMean(LineReach(radius, direction), centre, values, limit);
}

}  // namespace quentara
