#include "imageops/max_filter.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace quentara {
namespace {

using Sample = unsigned char;

void LargerOf(const Sample* a, const Sample* b, Sample* __restrict larger, int count) {
  for (int i = 0; i < count; ++i) larger[i] = a[i] > b[i] ? a[i] : b[i];
}

void RaiseTo(const Sample* __restrict floor, Sample* __restrict maxima, int count) {
  for (int i = 0; i < count; ++i) maxima[i] = floor[i] > maxima[i] ? floor[i] : maxima[i];
}

// Maxima of the clipped windows along a row. The buffers hold width + 2 * radius samples: zeros outside the row.
void MaximaAlongRow(int radius, const Sample* row, int width, Sample* buffer, Sample* spare, Sample* maxima) {
  const int side = 2 * radius + 1, padded = width + 2 * radius;
  std::fill_n(buffer, radius, Sample{0});
  std::copy_n(row, width, buffer + radius);
  std::fill_n(buffer + radius + width, radius, Sample{0});
  int run = 1;  // buffer[i] is the maximum of `run` samples from i on
  for (; 2 * run <= side; run *= 2, std::swap(buffer, spare))
    LargerOf(buffer, buffer + run, spare, padded - 2 * run + 1);
  LargerOf(buffer, buffer + side - run, maxima, width);
}

}  // namespace

BytePlane MaxFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  const int height = plane.rows(), width = plane.cols();
  // Beyond the plane's size a radius changes nothing but the size of the buffers.
  const int across = std::min(radius, width), down = std::min(radius, height), side = 2 * down + 1;
  BytePlane result(height, width), buffers(2, width + 2 * across);
  BytePlane rows(side, width);    // maxima along rows start - down .. start + down, then along those that follow
  BytePlane suffix(side, width);  // row i: the maxima of `rows` from row i of the block to its end
  BytePlane prefix(1, width);     // the maxima of the rows behind the block that the window has reached
  const auto load = [&](int y, Sample* maxima) {
    if (y < 0 || y >= height)
      std::fill_n(maxima, width, Sample{0});
    else
      MaximaAlongRow(across, Row(plane, y), width, Row(buffers, 0), Row(buffers, 1), maxima);
  };
  for (int i = 0; i < side; ++i) load(i - down, Row(rows, i));
  for (int start = 0; start < height; start += side) {
    std::copy_n(Row(rows, side - 1), width, Row(suffix, side - 1));
    for (int i = side - 2; i >= 0; --i) LargerOf(Row(rows, i), Row(suffix, i + 1), Row(suffix, i), width);
    prefix = 0;
    for (int i = 0; i < std::min(side, height - start); ++i) {
      LargerOf(Row(suffix, i), Row(prefix, 0), Row(result, start + i), width);
      load(start + down + 1 + i, Row(rows, i));
      RaiseTo(Row(rows, i), Row(prefix, 0), width);
    }
  }
  return result;
}

}  // namespace quentara
