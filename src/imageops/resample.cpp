#include "imageops/resample.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>
#include <vector>

#include "render/bands.h"
#include "render/scratch.h"

namespace quentara {
namespace {

/// Where a row or column of the result lies between two of the plane.
struct Tap {
  int first;
  int second;
  float fraction;
};

std::vector<Tap> Taps(int sourceSize, int size) {
  const float scale = static_cast<float>(sourceSize) / static_cast<float>(size);
  std::vector<Tap> taps(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) {
    const float position = scale * static_cast<float>(i) - 0.5f;
    const int floor = static_cast<int>(std::floor(position));
    taps[static_cast<std::size_t>(i)] = {std::clamp(floor, 0, sourceSize - 1), std::clamp(floor + 1, 0, sourceSize - 1),
                                         position - static_cast<float>(floor)};
  }
  return taps;
}

void InterpolateAlongRow(const unsigned char* row, const std::vector<Tap>& taps, float* __restrict interpolated) {
  for (const Tap& tap : taps)
    *interpolated++ =
        static_cast<float>(row[tap.first]) + static_cast<float>(row[tap.second] - row[tap.first]) * tap.fraction;
}

void InterpolateDown(const float* a, const float* b, float fraction, unsigned char* __restrict result, int width) {
  for (int x = 0; x < width; ++x) {
    const float value = a[x] + (b[x] - a[x]) * fraction;
    result[x] = static_cast<unsigned char>(static_cast<int>(std::clamp(value, 0.0f, 255.0f)));
  }
}

}  // namespace

BytePlane ResampleLuma(const BytePlane& plane, int height, int width) {
  assert(plane.numElements() > 0 && height >= 1 && width >= 1);
  const std::vector<Tap> down = Taps(plane.rows(), height), across = Taps(plane.cols(), width);
  BytePlane result(height, width);
  ForRowBands(height, [&](int firstRow, int rows) {
    // Neighbouring rows of an enlarged plane lie between the same two: these are interpolated once.
    Scratch<float> buffers(2 * static_cast<std::size_t>(width));
    float *above = buffers.data(), *below = above + width;
    int aboveRow = -1, belowRow = -1;
    for (int y = firstRow; y < firstRow + rows; ++y) {
      const Tap& tap = down[static_cast<std::size_t>(y)];
      if (tap.first == belowRow) std::swap(above, below), std::swap(aboveRow, belowRow);
      if (tap.first != aboveRow) InterpolateAlongRow(Row(plane, aboveRow = tap.first), across, above);
      if (tap.second != belowRow) InterpolateAlongRow(Row(plane, belowRow = tap.second), across, below);
      InterpolateDown(above, below, tap.fraction, Row(result, y), width);
    }
  });
  return result;
}

}  // namespace quentara
