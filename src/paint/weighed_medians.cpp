#include "paint/weighed_medians.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "imageops/float_memo.h"
#include "render/bands.h"

namespace quentara {
namespace {

constexpr double kExponent = 7.5;

void RepeatEnds(int reach, float* row, int width) {
  std::fill_n(row, reach, row[reach]);
  std::fill_n(row + reach + width, reach, row[reach + width - 1]);
}

/// Where each of four terms starts in its row.
using Points = std::array<std::ptrdiff_t, 4>;

void MeanRow(const float* weighted, const float* weights, const Points& points, float* __restrict means, int width) {
  const auto [a, b, c, d] = points;
  for (int x = 0; x < width; ++x) {
    const float sum = weighted[a + x] + weighted[b + x] + weighted[c + x] + weighted[d + x];
    means[x] = sum / (weights[a + x] + weights[b + x] + weights[c + x] + weights[d + x]);
  }
}

}  // namespace

WeighedMedians::WeighedMedians(int reach, const BytePlane& medians, const FloatPlane& deviations)
    : reach_(reach),
      weights_(medians.rows(), medians.cols() + 2 * reach),
      weighted_(medians.rows(), medians.cols() + 2 * reach) {
  assert(reach >= 0 && medians.numElements() > 0 && SameSize(medians, deviations));
  const int width = medians.cols();
  const float least = *std::min_element(deviations.data(), deviations.data() + deviations.numElements());
  ForRowBands(medians.rows(), [&](int firstRow, int rows) {
    auto power = MakeFloatMemo<float>([least](float deviation) {
      return static_cast<float>(std::pow(static_cast<double>(deviation + 1.0f - least), kExponent));
    });
    for (int y = firstRow; y < firstRow + rows; ++y) {
      float* const weights = Row(weights_, y) + reach_;
      float* const weighted = Row(weighted_, y) + reach_;
      std::transform(Row(deviations, y), Row(deviations, y) + width, weights, [&](float d) { return power(d); });
      for (int x = 0; x < width; ++x) {
        weighted[x] = Row(medians, y)[x] / weights[x];
        weights[x] = 1.0f / weights[x];
      }
      RepeatEnds(reach_, Row(weights_, y), width);
      RepeatEnds(reach_, Row(weighted_, y), width);
    }
  });
}

int WeighedMedians::ClampRow(int y) const {
  return std::clamp(y, 0, weights_.rows() - 1);
}

void WeighedMedians::CornerMeans(int y, float* means) const {
  const std::ptrdiff_t stride = weights_.cols(), side = 2 * reach_;
  const std::ptrdiff_t above = ClampRow(y - reach_) * stride, below = ClampRow(y + reach_) * stride;
  MeanRow(weighted_.data(), weights_.data(), {above, above + side, below, below + side}, means,
          static_cast<int>(stride - side));
}

void WeighedMedians::AxialMeans(int y, float* means) const {
  const std::ptrdiff_t stride = weights_.cols(), side = 2 * reach_;
  const std::ptrdiff_t above = ClampRow(y - reach_) * stride, below = ClampRow(y + reach_) * stride;
  MeanRow(weighted_.data(), weights_.data(), {y * stride, y * stride + side, above + reach_, below + reach_}, means,
          static_cast<int>(stride - side));
}

}  // namespace quentara
