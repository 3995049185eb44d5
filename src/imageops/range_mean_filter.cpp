#include "imageops/range_mean_filter.h"

#include <algorithm>
#include <cassert>

#include "imageops/column_histograms.h"
#include "imageops/direct_sums.h"
#include "imageops/method_choice.h"
#include "imageops/sliding_histogram.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

void RangeMeanFromHistograms(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                             ByteRows result) {
  ForStripRows(reach, values, CountersKind::kEach, result, [&](int y, int x, const HistogramRow& row) {
    Prefetch(centre, y + kRowsAhead, x, row.width);
    ActiveKernels().histogram[row.tallColumns].rangeMean(row, Row(centre, y) + x, limit, Row(result, y) + x);
  });
}

void RangeMeanFromSlidingHistogram(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                                   ByteRows result) {
  SlideHistogram(reach, values, result, [&](int y, int x, const Histogram& histogram) {
    const int c = Row(centre, y)[x], highest = std::min(c + limit, 255);
    float sum = 0.0f, count = 0.0f;
    for (int v = std::max(c - limit, 0); v <= highest; ++v) {
      sum += static_cast<float>(histogram[v] * v);
      count += static_cast<float>(histogram[v]);
    }
    Row(result, y)[x] = ToByte(sum / count);
  });
}

void RangeMean(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result) {
  assert(reach.rows >= 0 && reach.columns >= 0 && limit >= 0 && SameSize(centre, values));
  const int range = std::min(limit, 255);
  if (PrefersDirectMean(reach, range))
    RangeMeanFromDirectSums(reach, centre, values, range, result);
  else if (FitsColumnHistograms(reach, values.rows(), values.cols()))
    RangeMeanFromHistograms(reach, centre, values, range, result);
  else
    RangeMeanFromSlidingHistogram(reach, centre, values, range, result);
}

BytePlane RangeMean(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  BytePlane result(values.rows(), values.cols());
  RangeMean(reach, centre, values, limit, {result});
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

void RangeMeanFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result) {
  RangeMean(SquareReach(radius), centre, values, limit, result);
}

void RangeMeanLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit, LineDirection direction,
                    ByteRows result) {
  RangeMean(LineReach(radius, direction), centre, values, limit, result);
}

}  // namespace quentara
