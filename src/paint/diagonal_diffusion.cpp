#include "paint/diagonal_diffusion.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "render/bands.h"

namespace quentara {
namespace {

void MeanOf(const float* a, const float* b, float* __restrict means, int count) {
  for (int i = 0; i < count; ++i) means[i] = (a[i] + b[i]) / 2.0f;
}

// A row of a round, the first and last column included. A first or last row passes itself as the ones above and below.
void DiffuseRow(const float* above, const float* below, float* __restrict between, float* __restrict result,
                int width) {
  MeanOf(above, below, between, width);
  if (width < 3) {  // nothing lies inside: two columns take each other's values
    std::reverse_copy(between, between + width, result);
    return;
  }
  MeanOf(between, between + 2, result + 1, width - 2);
  result[0] = result[1];
  result[width - 1] = result[width - 2];
}

void DiffuseRound(const FloatPlane& plane, float* between, FloatPlane& result) {
  const int height = plane.rows(), width = plane.cols(), last = height - 1;
  for (int y = 0; y < height; ++y) {
    const bool inside = y > 0 && y < last;
    DiffuseRow(Row(plane, inside ? y - 1 : y), Row(plane, inside ? y + 1 : y), between, Row(result, y), width);
  }
  if (height == 1) return;
  // The ends of the rows belong to the columns.
  const int first = width > 1 ? 1 : 0, count = width > 1 ? width - 2 : 1;
  if (height == 2) {
    std::swap_ranges(Row(result, 0) + first, Row(result, 0) + first + count, Row(result, 1) + first);
  } else {
    std::copy_n(Row(result, 1) + first, count, Row(result, 0) + first);
    std::copy_n(Row(result, last - 1) + first, count, Row(result, last) + first);
  }
}

BytePlane Diffuse(int rounds, const BytePlane& plane) {
  const int height = plane.rows(), width = plane.cols();
  FloatPlane samples(height, width), next(height, width), between(1, width);
  std::copy_n(plane.data(), plane.numElements(), samples.data());
  for (int round = 0; round < rounds; ++round) {
    DiffuseRound(samples, between.data(), next);
    blitz::cycleArrays(samples, next);
  }
  BytePlane result(height, width);
  std::transform(samples.data(), samples.data() + samples.numElements(), result.data(), ToByte);
  return result;
}

}  // namespace

BytePlane DiagonalDiffusion(int rounds, const BytePlane& plane) {
  assert(rounds >= 0);
  return FilterInBands(
      rounds, [&](const BytePlane& band) { return Diffuse(rounds, band); }, plane);
}

}  // namespace quentara
