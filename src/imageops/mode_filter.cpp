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

void ModeFromSlidingHistogram(int radius, const BytePlane& lowest, const BytePlane& highest, const BytePlane& values,
                              BytePlane& result) {
  SlideHistogram(SquareReach(radius), values, [&](int y, int x, const Histogram& histogram) {
    const auto mode = std::max_element(&histogram[Row(lowest, y)[x]], &histogram[Row(highest, y)[x]] + 1);
    Row(result, y)[x] = static_cast<unsigned char>(mode - histogram.data());  // the first of the largest
  });
}

void RangesOf(const unsigned char* centre, int limit, unsigned char* __restrict lowest,
              unsigned char* __restrict highest, std::ptrdiff_t count) {
  const auto reach = static_cast<unsigned char>(limit), most = static_cast<unsigned char>(255 - limit);
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    lowest[i] = static_cast<unsigned char>((centre[i] > reach ? centre[i] : reach) - reach);
    highest[i] = static_cast<unsigned char>((centre[i] < most ? centre[i] : most) + reach);
  }
}

// Of the values lowest(y, x) .. highest(y, x).
BytePlane ModeBetween(int radius, const BytePlane& lowest, const BytePlane& highest, const BytePlane& values) {
  BytePlane result(values.rows(), values.cols());
  const WindowReach reach = SquareReach(radius);
  if (FitsColumnHistograms(reach, values.rows(), values.cols()))
    ForStripRows(reach, values, CountersKind::kEach, [&](int y, int x, const HistogramRow& row) {
      ActiveKernels().histogram.mode(row, Row(lowest, y) + x, Row(highest, y) + x, Row(result, y) + x);
    });
  else
    ModeFromSlidingHistogram(radius, lowest, highest, values, result);
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
  RangesOf(centre.data(), std::min(limit, 255), lowest.data(), highest.data(), values.numElements());
  return ModeBetween(radius, lowest, highest, values);
}

}  // namespace quentara
