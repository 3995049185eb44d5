#include "imageops/median_filter.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

#include "imageops/column_histograms.h"
#include "imageops/corners.h"
#include "imageops/direct_sums.h"
#include "imageops/median_networks.h"
#include "imageops/method_choice.h"
#include "imageops/sliding_histogram.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"
#include "render/scratch.h"

namespace quentara {
namespace {

void MedianFromHistograms(WindowReach reach, const BytePlane& plane, ByteRows result) {
  const int height = plane.rows(), width = plane.cols();
  const WindowKernels& kernels = ActiveKernels();
  Scratch<int> ranks(static_cast<std::size_t>(width));
  ForStripRows(reach, plane, CountersKind::kBelow, result, [&](int y, int x, const HistogramRow& row) {
    const bool windowChanged = y == result.first || y <= reach.rows || y >= height - reach.rows;
    if (windowChanged)
      for (int i = x; i < x + row.width; ++i) ranks[i] = MedianRank(y, i, height, width, reach);
    kernels.histogram[row.tallColumns].rank(row, ranks.data() + x, Row(result, y) + x);
  });
}

void MedianFromSlidingHistogram(WindowReach reach, const BytePlane& plane, ByteRows result) {
  SlideHistogram(reach, plane, result, [&](int y, int x, const Histogram& histogram) {
    const int rank = MedianRank(y, x, plane.rows(), plane.cols(), reach);
    Row(result, y)[x] = static_cast<unsigned char>(ValueOfRank(histogram, rank));
  });
}

void DeviationFromHistograms(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatRows result) {
  ForStripRows(reach, values, CountersKind::kBelowWithDistances, result, [&](int y, int x, const HistogramRow& row) {
    ActiveKernels().histogram[row.tallColumns].deviation(row, Row(medians, y) + x, Row(result, y) + x);
  });
}

void DeviationFromSlidingHistogram(WindowReach reach, const BytePlane& values, const BytePlane& medians,
                                   FloatRows result) {
  SlideHistogram(reach, values, result, [&](int y, int x, const Histogram& histogram) {
    const int median = Row(medians, y)[x];
    float sum = 0.0f, count = 0.0f;
    for (int v = 0; v < 256; ++v) {
      sum += static_cast<float>(histogram[v] * std::abs(v - median));
      count += static_cast<float>(histogram[v]);
    }
    Row(result, y)[x] = sum / count;
  });
}

}  // namespace

void MedianFilter(int radius, const BytePlane& plane, ByteRows result) {
  assert(radius >= 0);
  const WindowReach reach = SquareReach(radius);
  if (PrefersNetworks(radius, plane.rows(), plane.cols())) {
    MedianFromNetworks(radius, plane, result);
    const auto filter = [&](const BytePlane& corner, BytePlane& medians) {
      MedianFromSlidingHistogram(reach, corner, {medians});
    };
    FilterCorners(radius, plane, filter, result);
  } else if (FitsColumnHistograms(reach, plane.rows(), plane.cols()))
    MedianFromHistograms(reach, plane, result);
  else
    MedianFromSlidingHistogram(reach, plane, result);
}

BytePlane MedianFilter(int radius, const BytePlane& plane) {
  BytePlane result(plane.rows(), plane.cols());
  MedianFilter(radius, plane, {result});
  return result;
}

void MedianDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians, FloatRows result) {
  assert(radius >= 0 && SameSize(values, medians));
  const WindowReach reach = SquareReach(radius);
  if (PrefersQuads(reach, values.cols(), ActiveKernels().quads != nullptr))
    DeviationFromQuads(reach, values, medians, result);
  else if (PrefersDirectDeviation(reach))
    DeviationFromDirectSums(reach, values, medians, result);
  else if (FitsColumnHistograms(reach, values.rows(), values.cols()))
    DeviationFromHistograms(reach, values, medians, result);
  else
    DeviationFromSlidingHistogram(reach, values, medians, result);
}

FloatPlane MedianDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians) {
  FloatPlane result(values.rows(), values.cols());
  MedianDeviationFilter(radius, values, medians, {result});
  return result;
}

}  // namespace quentara
