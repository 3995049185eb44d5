#include "imageops/small_diamonds.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "imageops/diamond_window.h"
#include "imageops/direct_sums.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/scratch.h"

namespace quentara {
namespace {

using Sample = unsigned char;

// The rows of the windows of row y; outside(distance) stands for the rows above and below the plane.
template <class Outside>
void WindowRows(int radius, const BytePlane& plane, int y, const Outside& outside, std::vector<const Sample*>& rows) {
  rows.clear();
  for (int row = y - radius; row <= y + radius; ++row) {
    const int distance = std::max(-row, row - plane.rows() + 1);
    rows.push_back(distance <= 0 ? Row(plane, row) : outside(distance));
  }
}

// Medians of the windows that reach no further than the first and last column. The networks know whole windows only: in
// place of the triangle that the upper or lower edge cuts off they get samples that do not move the median, half of
// them black and the odd one white. In rows of black and white in turns two rows that follow each other have as many of
// both, as the triangle loses one on either side; its tip, if it has an odd number of rows, is white.
void MedianOfRows(int radius, const BytePlane& plane, int firstRow, int endRow, BytePlane& result) {
  const int height = plane.rows(), width = plane.cols();
  Scratch<Sample> stripes(static_cast<std::size_t>(width)), white(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) stripes[x] = x % 2 == 0 ? 0 : 255, white[x] = 255;
  const auto median = ActiveKernels().diamond.median[radius];
  std::vector<const Sample*> rows;
  for (int y = firstRow; y < endRow; ++y) {
    const int cut = radius - std::min(y, height - 1 - y);
    const auto padding = [&](int distance) { return distance == cut && cut % 2 == 1 ? white.data() : stripes.data(); };
    WindowRows(radius, plane, y, padding, rows);
    median({rows.data(), radius, width - 2 * radius}, Row(result, y) + radius);
  }
}

// The medians beside the left or right edge, by rows of the turned plane.
void MedianOfSide(int radius, const BytePlane& plane, bool right, BytePlane& result) {
  const int height = plane.rows(), side = 2 * radius, left = right ? plane.cols() - side : 0;
  BytePlane turned(side, height), medians(side, height);
  for (int y = 0; y < height; ++y)
    for (int i = 0; i < side; ++i) Row(turned, i)[y] = Row(plane, y)[left + i];
  const int first = right ? radius : 0;
  MedianOfRows(radius, turned, first, first + radius, medians);
  for (int y = radius; y < height - radius; ++y)
    for (int i = first; i < first + radius; ++i) Row(result, y)[left + i] = Row(medians, i)[y];
}

}  // namespace

void DiamondMedianFromNetworks(int radius, const BytePlane& plane, BytePlane& result) {
  assert(radius >= 1 && radius <= kMostNetworkDiamond);
  assert(std::min(plane.rows(), plane.cols()) >= 2 * radius + kMostByteLanes);
  MedianOfRows(radius, plane, 0, plane.rows(), result);
  for (const bool right : {false, true}) MedianOfSide(radius, plane, right, result);
}

void DiamondDeviationFromDirectSums(int radius, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  const int height = values.rows(), width = values.cols();
  const DiamondWindow window = {radius, height, width};
  const BytePlane padded(PadRows(values, radius));
  Scratch<float> sizes(static_cast<std::size_t>(width));
  std::vector<WindowLine> lines;
  for (int y = 0; y < height; ++y) {
    if (y <= radius || y >= height - radius)
      for (int x = 0; x < width; ++x) sizes[x] = static_cast<float>(window.Size(y, x));
    lines.clear();
    for (int row = std::max(y - radius, 0); row <= std::min(y + radius, height - 1); ++row) {
      const int cut = std::abs(row - y);
      lines.push_back({Row(padded, row) + cut, 2 * (radius - cut) + 1});
    }
    ActiveKernels().distance.deviation({lines.data(), static_cast<int>(lines.size()), width}, Row(medians, y),
                                       sizes.data(), Row(result, y));
  }
}

}  // namespace quentara
