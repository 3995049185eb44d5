#include "imageops/median_filter.h"

#include <cassert>
#include <cstdlib>

#include "imageops/sliding_histogram.h"
#include "imageops/window_reach.h"

namespace quentara {

BytePlane MedianFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  BytePlane result(plane.rows(), plane.cols());
  const WindowReach reach = SquareReach(radius);
  SlideHistogram(reach, plane, [&](int y, int x, const Histogram& histogram) {
    const int rank = MedianRank(y, x, plane.rows(), plane.cols(), reach);
    Row(result, y)[x] = static_cast<unsigned char>(ValueOfRank(histogram, rank));
  });
  return result;
}

FloatPlane MedianDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians) {
  assert(radius >= 0 && SameSize(values, medians));
  FloatPlane result(values.rows(), values.cols());
  SlideHistogram(SquareReach(radius), values, [&](int y, int x, const Histogram& histogram) {
    const int median = Row(medians, y)[x];
    float sum = 0.0f, count = 0.0f;
    for (int v = 0; v < 256; ++v) {
      sum += static_cast<float>(histogram[v] * std::abs(v - median));
      count += static_cast<float>(histogram[v]);
    }
    Row(result, y)[x] = sum / count;
  });
  return result;
}

}  // namespace quentara
