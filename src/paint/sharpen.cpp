#include "paint/sharpen.h"

#include <algorithm>
#include <cassert>

#include "render/bands.h"

namespace quentara {
namespace {

// The columns 1 .. width - 2 of a row that has one above and one below.
void SharpenInside(float gain, const float* above, const float* row, const float* below, float* __restrict result,
                   int width) {
  const float k = -(gain - 1.0f);
  for (int x = 1; x < width - 1; ++x) {
    const float sum = k * above[x - 1] + k * above[x] + k * above[x + 1] + k * row[x - 1] + row[x] * 8.0f * gain +
                      k * row[x + 1] + k * below[x - 1] + k * below[x] + k * below[x + 1];
    result[x] = sum / 8.0f;
  }
}

float SharpenClipped(float gain, const FloatPlane& plane, int y, int x) {
  const int top = std::max(y - 1, 0), bottom = std::min(y + 1, plane.rows() - 1);
  const int left = std::max(x - 1, 0), right = std::min(x + 1, plane.cols() - 1);
  const auto neighbours = static_cast<float>((bottom - top + 1) * (right - left + 1) - 1);
  if (neighbours == 0.0f) return plane(y, x);
  float sum = 0.0f;
  for (int j = top; j <= bottom; ++j)
    for (int i = left; i <= right; ++i)
      sum += j == y && i == x ? Row(plane, j)[i] * neighbours * gain : -(gain - 1.0f) * Row(plane, j)[i];
  return sum / neighbours;
}

}  // namespace

FloatPlane Sharpen3x3(float gain, const FloatPlane& plane) {
  assert(gain >= 1.0f);
  const int height = plane.rows(), width = plane.cols();
  FloatPlane result(height, width);
  ForRowBands(height, [&](int firstRow, int rows) {
    for (int y = firstRow; y < firstRow + rows; ++y) {
      const bool inside = y > 0 && y < height - 1 && width > 2;
      if (inside) SharpenInside(gain, Row(plane, y - 1), Row(plane, y), Row(plane, y + 1), Row(result, y), width);
      for (int x = 0; x < width; x += inside ? width - 1 : 1) Row(result, y)[x] = SharpenClipped(gain, plane, y, x);
    }
  });
  return result;
}

}  // namespace quentara
