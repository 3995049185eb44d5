#include "imageops/direct_sums.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "imageops/method_choice.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/scratch.h"

namespace quentara {
namespace {

// Room for a row's pixels in whole registers.
std::size_t RoomFor(int width) {
  return static_cast<std::size_t>(width + kMostByteLanes);
}

// The windows of row y in a plane padded by reach.columns.
WindowRow WindowsOf(WindowReach reach, const BytePlane& padded, int y, int width) {
  const int first = std::max(y - reach.rows, 0);
  const int rows = ClippedExtent(y, reach.rows, padded.rows());
  return {Row(padded, first), padded.stride(0), rows, 2 * reach.columns + 1, width};
}

}  // namespace

BytePlane PadRows(const BytePlane& plane, int columns, unsigned char padding) {
  BytePlane padded(plane.rows(), plane.cols() + 2 * columns + kMostByteLanes);
  padded = padding;
  for (int y = 0; y < plane.rows(); ++y) std::copy_n(Row(plane, y), plane.cols(), Row(padded, y) + columns);
  return padded;
}

void RangeMeanFromDirectSums(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                             BytePlane& result) {
  const int width = values.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const BytePlane padded(PadRows(values, reach.columns));
  Scratch<std::uint16_t> outside(RoomFor(width));
  for (int x = 0; x < width; ++x)
    outside[x] = static_cast<std::uint16_t>(2 * reach.columns + 1 - ClippedExtent(x, reach.columns, width));
  for (int y = 0; y < values.rows(); ++y)
    kernels.rangeMean(WindowsOf(reach, padded, y, width), Row(centre, y), limit, outside.data(), Row(result, y));
}

void RangeMedianByBisection(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                            BytePlane& result) {
  const int height = values.rows(), width = values.cols(), steps = BisectionSteps(limit);
  const RangeMedianKernels& kernels = ActiveKernels().rangeMedian;
  BytePlane padded(PadRows(values, reach.columns, 255));
  std::for_each(padded.data(), padded.data() + padded.numElements(), [](unsigned char& v) { v ^= kBisectionBias; });
  Scratch<unsigned char> sizes(static_cast<std::size_t>(width));
  for (int y = 0; y < height; ++y) {
    const WindowRow windows = WindowsOf(reach, padded, y, width);
    if (y <= reach.rows || y >= height - reach.rows)
      for (int x = 0; x < width; ++x)
        sizes[x] = static_cast<unsigned char>(windows.rows * ClippedExtent(x, reach.columns, width));
    kernels.byBisection(windows, Row(centre, y), limit, steps, sizes.data(), Row(result, y));
  }
}

void DeviationFromDirectSums(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  const int height = values.rows(), width = values.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const BytePlane padded(PadRows(values, reach.columns, 255));
  Scratch<std::uint16_t> columns(RoomFor(width + 2 * reach.columns));
  Scratch<unsigned char> zeros(RoomFor(width));
  Scratch<float> sizes(RoomFor(width));
  const auto rowOf = [&](int y) { return y >= 0 && y < height ? Row(values, y) : zeros.data(); };
  for (int y = -reach.rows; y < height; ++y) {
    kernels.moveColumns(rowOf(y + reach.rows), rowOf(y - reach.rows - 1), columns.data() + reach.columns, width);
    if (y < 0) continue;
    const WindowRow windows = WindowsOf(reach, padded, y, width);
    if (y <= reach.rows || y >= height - reach.rows)
      for (int x = 0; x < width; ++x)
        sizes[x] = static_cast<float>(windows.rows * ClippedExtent(x, reach.columns, width));
    kernels.deviation(windows, Row(medians, y), columns.data(), sizes.data(), Row(result, y));
  }
}

}  // namespace quentara
