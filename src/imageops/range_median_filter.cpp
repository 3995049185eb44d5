#include "imageops/range_median_filter.h"

#include <algorithm>
#include <cassert>
#include <numeric>

#include "imageops/column_histograms.h"
#include "imageops/direct_sums.h"
#include "imageops/method_choice.h"
#include "imageops/sliding_histogram.h"
#include "imageops/transpose.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"

namespace quentara {
namespace {

void RangeMedianFromHistograms(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                               ByteRows result) {
  ForStripRows(reach, values, CountersKind::kBelow, result, [&](int y, int x, const HistogramRow& row) {
    Prefetch(centre, y + kRowsAhead, x, row.width);
    ActiveKernels().histogram[row.tallColumns].rangeMedian(row, Row(centre, y) + x, limit, Row(result, y) + x);
  });
}

void RangeMedianFromSlidingHistogram(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                                     ByteRows result) {
  SlideHistogram(reach, values, result, [&](int y, int x, const Histogram& histogram) {
    const int c = Row(centre, y)[x], lowest = std::max(c - limit, 0), highest = std::min(c + limit, 255);
    const int count = std::accumulate(&histogram[lowest], &histogram[highest] + 1, 0);
    Row(result, y)[x] = static_cast<unsigned char>(ValueOfRank(histogram, (count - 1) / 2, lowest));
  });
}

void RangeMedian(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result);

// In a column the window's histogram is at hand; a turned plane costs less than to gather it along a row.
void RangeMedianOfTurned(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                         ByteRows result) {
  const BytePlane turnedCentre(Transpose(centre)), turnedValues(Transpose(values));
  BytePlane turned(values.cols(), values.rows());
  RangeMedian({reach.columns, reach.rows}, turnedCentre, turnedValues, limit, {turned});
  const BytePlane medians(Transpose(turned));
  std::copy_n(Row(medians, result.first), result.samples.numElements(), result.samples.data());
}

void RangeMedian(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result) {
  assert(reach.rows >= 0 && reach.columns >= 0 && limit >= 0 && SameSize(centre, values));
  const int range = std::min(limit, 255);
  if (PrefersBisection(reach, range, values.cols()))
    RangeMedianByBisection(reach, centre, values, range, result);
  else if (reach.columns > reach.rows)
    RangeMedianOfTurned(reach, centre, values, range, result);
  else if (FitsColumnHistograms(reach, values.rows(), values.cols()))
    RangeMedianFromHistograms(reach, centre, values, range, result);
  else
    RangeMedianFromSlidingHistogram(reach, centre, values, range, result);
}

BytePlane RangeMedian(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  BytePlane result(values.rows(), values.cols());
  RangeMedian(reach, centre, values, limit, {result});
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

void RangeMedianFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result) {
  RangeMedian(SquareReach(radius), centre, values, limit, result);
}

void RangeMedianLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit, LineDirection direction,
                      ByteRows result) {
  RangeMedian(LineReach(radius, direction), centre, values, limit, result);
}

}  // namespace quentara
