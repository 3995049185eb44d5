#include "imageops/box_mean_filter.h"

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "imageops/window_reach.h"
#include "render/scratch.h"

namespace quentara {
namespace {

using Sample = unsigned char;
using Sum = std::uint32_t;

void AddRow(const Sample* row, Sum* __restrict columns, int width) {
  for (int x = 0; x < width; ++x) columns[x] += row[x];
}

void RemoveRow(const Sample* row, Sum* __restrict columns, int width) {
  for (int x = 0; x < width; ++x) columns[x] -= row[x];
}

// totals[x]: the sum of the columns before x.
void Accumulate(const Sum* columns, Sum* __restrict totals, int width) {
  Sum total = 0;
  for (int x = 0; x < width; ++x) {
    totals[x] = total;
    total += columns[x];
  }
  totals[width] = total;
}

void DivideRow(const Sum* before, const Sum* behind, const float* counts, float rows, Sample* __restrict means,
               int width) {
  for (int x = 0; x < width; ++x)
    means[x] = ToByte(static_cast<float>(static_cast<int>(behind[x] - before[x])) / (rows * counts[x]));
}

}  // namespace

BytePlane BoxMeanFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  const int height = plane.rows(), width = plane.cols();
  const int across = std::min(radius, width), down = std::min(radius, height);
  BytePlane result(height, width);
  Scratch<Sum> columns(static_cast<std::size_t>(width));
  // The totals go on beyond both ends of the row, so that the windows there need no clipping.
  Scratch<Sum> totals(static_cast<std::size_t>(width + 2 * across + 1));
  Scratch<float> counts(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) counts[x] = static_cast<float>(ClippedExtent(x, across, width));
  for (int y = 0; y < std::min(down, height); ++y) AddRow(Row(plane, y), columns.data(), width);
  for (int y = 0; y < height; ++y) {
    if (y + down < height) AddRow(Row(plane, y + down), columns.data(), width);
    if (y - down - 1 >= 0) RemoveRow(Row(plane, y - down - 1), columns.data(), width);
    Accumulate(columns.data(), totals.data() + across, width);
    std::fill_n(totals.data() + across + width + 1, across, totals[across + width]);
    DivideRow(totals.data(), totals.data() + across + across + 1, counts.data(),
              static_cast<float>(ClippedExtent(y, down, height)), Row(result, y), width);
  }
  return result;
}

}  // namespace quentara
