#include "imageops/diamond_filters.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "imageops/corners.h"
#include "imageops/diagonal_histograms.h"
#include "imageops/diamond_window.h"
#include "imageops/method_choice.h"
#include "imageops/small_diamonds.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/scratch.h"

namespace quentara {
namespace {

// ranks[i] = the median's in the window of pixel (x + d + i, x + i). Whole windows, which come in one run, share
// theirs.
void RanksOfDiagonal(const DiamondWindow& window, int d, int x, int count, int* ranks) {
  const int radius = window.radius, firstWhole = std::max(radius, radius - d) - x;
  const int endWhole = std::min(window.width, window.height - d) - radius - x;
  const int first = std::clamp(firstWhole, 0, count), end = std::clamp(endWhole, first, count);
  const auto each = [&](int i, int last) {
    for (; i < last; ++i) ranks[i] = window.MedianRank(x + d + i, x + i);
  };
  each(0, first);
  std::fill(ranks + first, ranks + end, DiamondWindow::WholeSize(radius) / 2);
  each(end, count);
}

void MedianFromHistograms(int radius, const BytePlane& plane, BytePlane& result) {
  const DiamondWindow window = {radius, plane.rows(), plane.cols()};
  const Diagonals diagonals(plane.rows(), plane.cols());
  const auto count = static_cast<std::size_t>(plane.numElements());
  Scratch<unsigned char> samples(count), medians(count);
  diagonals.Gather(plane, samples.data());
  int ranks[DiagonalHistograms::kStrip];
  ForDiagonalRows(radius, diagonals, samples.data(), CountersKind::kBelow, [&](int d, int x, const HistogramRow& row) {
    RanksOfDiagonal(window, d, x, row.width, ranks);
    ActiveKernels().histogram[kDiagonalKernels].rank(row, ranks, medians.data() + diagonals.Place(d, x));
  });
  diagonals.Scatter(medians.data(), result);
}

void DeviationFromHistograms(int radius, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  const Diagonals diagonals(values.rows(), values.cols());
  const auto count = static_cast<std::size_t>(values.numElements());
  Scratch<unsigned char> samples(count), levels(count);
  Scratch<float> deviations(count);
  diagonals.Gather(values, samples.data());
  diagonals.Gather(medians, levels.data());
  ForDiagonalRows(
      radius, diagonals, samples.data(), CountersKind::kBelowWithDistances, [&](int d, int x, const HistogramRow& row) {
        const std::ptrdiff_t place = diagonals.Place(d, x);
        ActiveKernels().histogram[kDiagonalKernels].deviation(row, levels.data() + place, deviations.data() + place);
      });
  diagonals.Scatter(deviations.data(), result);
}

}  // namespace

BytePlane DiamondMedianFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  BytePlane result(plane.rows(), plane.cols());
  if (PrefersDiamondNetworks(radius, plane.rows(), plane.cols())) {
    DiamondMedianFromNetworks(radius, plane, result);
    FilterCorners(
        radius, plane,
        [&](const BytePlane& corner, BytePlane& medians) { MedianFromHistograms(radius, corner, medians); },
        ByteRows{result});
  } else {
    MedianFromHistograms(radius, plane, result);
  }
  return result;
}

FloatPlane DiamondDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians) {
  assert(radius >= 0 && SameSize(values, medians));
  FloatPlane result(values.rows(), values.cols());
  if (PrefersDirectDiamondDeviation(radius))
    DiamondDeviationFromDirectSums(radius, values, medians, result);
  else
    DeviationFromHistograms(radius, values, medians, result);
  return result;
}

}  // namespace quentara
