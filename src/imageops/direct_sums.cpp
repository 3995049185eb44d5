#include "imageops/direct_sums.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

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

// Whether the windows of row y can have other sizes than those of the row above; the first row has none above.
bool SizesChange(WindowReach reach, int y, int height, int firstRow) {
  return y == firstRow || y <= reach.rows || y >= height - reach.rows;
}

// How many samples the windows of row y have.
void FillSizes(WindowReach reach, int y, const BytePlane& values, float* sizes) {
  const int height = values.rows(), width = values.cols();
  const int rows = ClippedExtent(y, reach.rows, height);
  for (int x = 0; x < width; ++x) sizes[x] = static_cast<float>(rows * ClippedExtent(x, reach.columns, width));
}

/// The samples behind a row of windows in fours: of four rows, for as many rows as a window spans, or of four columns.
class QuadRows {
 public:
  QuadRows(WindowReach reach, const BytePlane& values)
      : reach_(reach),
        values_(values),
        width_(values.cols() + 2 * reach.columns),
        ring_(2 * reach.rows + 1),
        samples_(static_cast<std::size_t>(width_ + 3)),
        quads_(static_cast<std::size_t>((ring_ + 1) * 4 * width_)) {
    std::fill_n(samples_.data(), width_ + 3, kPadding);
    std::fill_n(quads_.data(), (ring_ + 1) * 4 * width_, kPadding);
  }

  void LoadUpTo(int y) {
    for (; loaded_ <= y; ++loaded_) {
      const unsigned char* rows[4];
      for (int i = 0; i < 4; ++i) rows[i] = Row(values_, std::min(loaded_ + i, values_.rows() - 1));
      ActiveKernels().quads->interleave(rows, Place(loaded_ % ring_) + 4 * reach_.columns, values_.cols());
    }
  }
  // Rows y .. y + 3, the first of them loaded.
  const unsigned char* RowsFrom(int y) { return Place(y % ring_); }
  // Until the next call.
  const unsigned char* ColumnsOf(int y) {
    std::copy_n(Row(values_, y), values_.cols(), samples_.data() + reach_.columns);
    const unsigned char* const shifted[] = {samples_.data(), samples_.data() + 1, samples_.data() + 2,
                                            samples_.data() + 3};
    ActiveKernels().quads->interleave(shifted, Place(ring_), width_);
    return Place(ring_);
  }

 private:
  static constexpr unsigned char kPadding = 255;

  unsigned char* Place(int line) { return quads_.data() + line * std::ptrdiff_t{4} * width_; }

  const WindowReach reach_;
  const BytePlane& values_;
  const int width_, ring_;
  Scratch<unsigned char> samples_, quads_;
  int loaded_ = 0;
};

}  // namespace

BytePlane PadRows(const BytePlane& plane, int columns, unsigned char padding) {
  BytePlane padded(plane.rows(), plane.cols() + 2 * columns + kMostByteLanes + 8);
  padded = padding;
  for (int y = 0; y < plane.rows(); ++y) std::copy_n(Row(plane, y), plane.cols(), Row(padded, y) + columns);
  return padded;
}

void RangeMeanFromDirectSums(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                             ByteRows result) {
  const int width = values.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const BytePlane padded(PadRows(values, reach.columns));
  Scratch<std::uint16_t> outside(RoomFor(width));
  for (int x = 0; x < width; ++x)
    outside[x] = static_cast<std::uint16_t>(2 * reach.columns + 1 - ClippedExtent(x, reach.columns, width));
  for (int y = result.first; y < result.end(); ++y)
    kernels.rangeMean(WindowsOf(reach, padded, y, width), Row(centre, y), limit, outside.data(), Row(result, y));
}

void RangeMedianByBisection(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                            ByteRows result) {
  const int height = values.rows(), width = values.cols(), steps = BisectionSteps(limit);
  const RangeMedianKernels& kernels = ActiveKernels().rangeMedian;
  BytePlane padded(PadRows(values, reach.columns, 255));
  std::for_each(padded.data(), padded.data() + padded.numElements(), [](unsigned char& v) { v ^= kBisectionBias; });
  Scratch<unsigned char> sizes(static_cast<std::size_t>(width));
  for (int y = result.first; y < result.end(); ++y) {
    const WindowRow windows = WindowsOf(reach, padded, y, width);
    if (SizesChange(reach, y, height, result.first))
      for (int x = 0; x < width; ++x)
        sizes[x] = static_cast<unsigned char>(windows.rows * ClippedExtent(x, reach.columns, width));
    kernels.byBisection(windows, Row(centre, y), limit, steps, sizes.data(), Row(result, y));
  }
}

void DeviationFromDirectSums(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatRows result) {
  const int height = values.rows(), width = values.cols(), side = 2 * reach.columns + 1;
  const BytePlane padded(PadRows(values, reach.columns));
  Scratch<float> sizes(static_cast<std::size_t>(width));
  std::vector<WindowLine> lines;
  for (int y = result.first; y < result.end(); ++y) {
    if (SizesChange(reach, y, height, result.first)) FillSizes(reach, y, values, sizes.data());
    lines.clear();
    for (int row = std::max(y - reach.rows, 0); row <= std::min(y + reach.rows, height - 1); ++row)
      lines.push_back({Row(padded, row), side});
    ActiveKernels().distance.deviation({lines.data(), static_cast<int>(lines.size()), width}, Row(medians, y),
                                       sizes.data(), Row(result, y));
  }
}

void DeviationFromQuads(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatRows result) {
  const int height = values.rows(), width = values.cols(), side = 2 * reach.columns + 1;
  const QuadKernels& kernels = *ActiveKernels().quads;
  Scratch<std::uint16_t> columns(RoomFor(width + 2 * reach.columns));
  Scratch<unsigned char> zeros(static_cast<std::size_t>(width));
  Scratch<float> sizes(static_cast<std::size_t>(width));
  const auto rowOf = [&](int y) { return y >= 0 && y < height ? Row(values, y) : zeros.data(); };
  QuadRows quads(reach, values);
  std::vector<QuadLine> lines;
  for (int y = -reach.rows; y < result.end(); ++y) {
    kernels.moveColumns(rowOf(y + reach.rows), rowOf(y - reach.rows - 1), columns.data() + reach.columns, width);
    if (y < result.first) continue;
    if (SizesChange(reach, y, height, result.first)) FillSizes(reach, y, values, sizes.data());
    const int first = std::max(y - reach.rows, 0), rows = ClippedExtent(y, reach.rows, height);
    quads.LoadUpTo(first + rows - 1);
    lines.clear();
    for (int i = 0; i + 1 < rows; i += 4) lines.push_back({quads.RowsFrom(first + i), side, 4, std::min(rows - i, 4)});
    if (rows % 4 == 1) {  // the last row by itself, column by column in fours
      const unsigned char* const last = quads.ColumnsOf(first + rows - 1);
      lines.push_back({last, side / 4, 16, 4});
      lines.push_back({last + side / 4 * 16, 1, 0, side % 4});
    }
    kernels.deviation({lines.data(), static_cast<int>(lines.size()), rows, side, width}, Row(medians, y),
                      columns.data(), sizes.data(), Row(result, y));
  }
}

}  // namespace quentara
