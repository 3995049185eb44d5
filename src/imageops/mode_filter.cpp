#include "imageops/mode_filter.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "imageops/column_histograms.h"
#include "imageops/max_filter.h"
#include "imageops/sliding_histogram.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

// rangeOf(y, x) are the values of which the mode is taken.
template <class RangeOf>
void ModeFromSlidingHistogram(WindowReach reach, const RangeOf& rangeOf, const BytePlane& values, ByteRows result) {
  SlideHistogram(reach, values, result, [&](int y, int x, const Histogram& histogram) {
    const auto [lowest, highest] = rangeOf(y, x);
    const auto mode = std::max_element(&histogram[lowest], &histogram[highest] + 1);
    Row(result, y)[x] = static_cast<unsigned char>(mode - histogram.data());  // the first of the largest
  });
}

}  // namespace

void ModeFilter(int radius, const BytePlane& plane, ByteRows result) {
  assert(radius >= 0);
  const WindowReach reach = SquareReach(radius);
  if (FitsColumnHistograms(reach, plane.rows(), plane.cols())) {
    BytePlane least(result.samples.shape()), largest(result.samples.shape());
    const ByteRows lowest{least, result.first}, highest{largest, result.first};
    MinFilter(radius, plane, lowest);
    MaxFilter(radius, plane, highest);
    ForStripRows(reach, plane, CountersKind::kEach, result, [&](int y, int x, const HistogramRow& row) {
      ActiveKernels().histogram[row.tallColumns].mode(row, Row(lowest, y) + x, Row(highest, y) + x, Row(result, y) + x);
    });
  } else {
    ModeFromSlidingHistogram(
        reach, [](int, int) { return std::pair(0, 255); }, plane, result);
  }
}

BytePlane ModeFilter(int radius, const BytePlane& plane) {
  BytePlane result(plane.rows(), plane.cols());
  ModeFilter(radius, plane, {result});
  return result;
}

void RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result) {
  assert(radius >= 0 && limit >= 0 && SameSize(centre, values));
  const WindowReach reach = SquareReach(radius);
  const int range = std::min(limit, 255);
  if (FitsColumnHistograms(reach, values.rows(), values.cols())) {
    ForStripRows(reach, values, CountersKind::kEach, result, [&](int y, int x, const HistogramRow& row) {
      Prefetch(centre, y + kRowsAhead, x, row.width);
      ActiveKernels().histogram[row.tallColumns].rangeMode(row, Row(centre, y) + x, range, Row(result, y) + x);
    });
  } else {
    const auto rangeOf = [&](int y, int x) {
      const int c = Row(centre, y)[x];
      return std::pair(std::max(c - range, 0), std::min(c + range, 255));
    };
    ModeFromSlidingHistogram(reach, rangeOf, values, result);
  }
}

BytePlane RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  BytePlane result(values.rows(), values.cols());
  RangeModeFilter2(radius, centre, values, limit, {result});
  return result;
}

}  // namespace quentara
