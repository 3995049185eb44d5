#include "imageops/mode_filter.h"

#include <algorithm>
#include <cassert>

#include "imageops/column_histograms.h"
#include "imageops/max_filter.h"
#include "imageops/sliding_histogram.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

void ModeFromSlidingHistogram(WindowReach reach, const BytePlane& lowest, const BytePlane& highest,
                              const BytePlane& values, BytePlane& result) {
  SlideHistogram(reach, values, [&](int y, int x, const Histogram& histogram) {
    const auto mode = std::max_element(&histogram[Row(lowest, y)[x]], &histogram[Row(highest, y)[x]] + 1);
    Row(result, y)[x] = static_cast<unsigned char>(mode - histogram.data());  // the first of the largest
  });
}

// Of the values lowest(y, x) .. highest(y, x).
BytePlane ModeBetween(int radius, const BytePlane& lowest, const BytePlane& highest, const BytePlane& values) {
  BytePlane result(values.rows(), values.cols());
  const WindowReach reach = SquareReach(radius);
  if (FitsColumnHistograms(reach, values.rows(), values.cols()))
    ForStripRows(reach, values, CountersKind::kEach, [&](int y, int x, const HistogramRow& row) {
      ActiveKernels().histogram[row.tallColumns].mode(row, Row(lowest, y) + x, Row(highest, y) + x, Row(result, y) + x);
    });
  else
    ModeFromSlidingHistogram(reach, lowest, highest, values, result);
  return result;
}

}  // namespace

BytePlane ModeFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  return ModeBetween(radius, MinFilter(radius, plane), MaxFilter(radius, plane), plane);
}

BytePlane RangeModeFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  assert(radius >= 0 && limit >= 0 && SameSize(centre, values));
  BytePlane lowest(values.rows(), values.cols()), highest(values.rows(), values.cols());
  RangesAround(centre.data(), std::min(limit, 255), static_cast<int>(values.numElements()), lowest.data(),
               highest.data());
  return ModeBetween(radius, lowest, highest, values);
}

}  // namespace quentara
