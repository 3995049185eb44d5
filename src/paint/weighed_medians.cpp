#include "paint/weighed_medians.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>

namespace quentara {
namespace {

constexpr double kExponent = 7.5;

void RepeatEnds(int reach, float* row, int width) {
  std::fill_n(row, reach, row[reach]);
  std::fill_n(row + reach + width, reach, row[reach + width - 1]);
}

void DivideByPowers(const unsigned char* medians, float* __restrict powers, float* __restrict weighted, int width) {
  for (int x = 0; x < width; ++x) {
    weighted[x] = medians[x] / powers[x];
    powers[x] = 1.0f / powers[x];
  }
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

float WeighedMedians::Power::operator()(float deviation) const {
  return static_cast<float>(std::pow(static_cast<double>(deviation + 1.0f - leastDeviation), kExponent));
}

WeighedMedians::WeighedMedians(int reach, const Planes& planes, int firstRow)
    : reach_(reach),
      planes_(planes),
      power_(Power{planes.leastDeviation}),
      nextRow_(std::max(firstRow - reach, 0)),
      weights_(2 * reach + 1, planes.medians.cols() + 2 * reach),
      weighted_(2 * reach + 1, planes.medians.cols() + 2 * reach) {
  assert(reach >= 0 && SameSize(planes.medians, planes.deviations));
}

void WeighedMedians::WeighRows(int end) {
  const int width = planes_.medians.cols();
  for (const int last = std::min(end, planes_.medians.rows()); nextRow_ < last; ++nextRow_) {
    float* const weights = weights_.data() + Place(nextRow_);
    float* const weighted = weighted_.data() + Place(nextRow_);
    const float* const deviations = Row(planes_.deviations, nextRow_);
    std::transform(deviations, deviations + width, weights + reach_, [&](float d) { return power_(d); });
    DivideByPowers(Row(planes_.medians, nextRow_), weights + reach_, weighted + reach_, width);
    RepeatEnds(reach_, weights, width);
    RepeatEnds(reach_, weighted, width);
  }
}

std::ptrdiff_t WeighedMedians::Place(int y) const {
  const std::ptrdiff_t row = std::clamp(y, 0, planes_.medians.rows() - 1) % weights_.rows();
  return row * weights_.cols();
}

void WeighedMedians::CornerMeans(int y, float* means) {
  WeighRows(y + reach_ + 1);
  const std::ptrdiff_t above = Place(y - reach_), below = Place(y + reach_);
  const std::ptrdiff_t side = 2 * std::ptrdiff_t{reach_};
  MeanRow(weighted_.data(), weights_.data(), {above, above + side, below, below + side}, means, planes_.medians.cols());
}

void WeighedMedians::AxialMeans(int y, float* means) {
  WeighRows(y + reach_ + 1);
  const std::ptrdiff_t row = Place(y), above = Place(y - reach_), below = Place(y + reach_);
  const std::ptrdiff_t side = 2 * std::ptrdiff_t{reach_};
  MeanRow(weighted_.data(), weights_.data(), {row, row + side, above + reach_, below + reach_}, means,
          planes_.medians.cols());
}

}  // namespace quentara
