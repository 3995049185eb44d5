#include "imageops/diagonal_histograms.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

constexpr int kSegments = 16;

// The columns of a strip, and those that the windows reach and the last step enters.
int CountersOf(int radius) {
  return 16 * (DiagonalHistograms::kStrip + 2 * radius + 4);
}

// Half of a number, rounded up.
int HalfOf(int number) {
  return (number + 1) >> 1;
}

}  // namespace

DiagonalHistograms::DiagonalHistograms(int radius, const Diagonals& diagonals, const unsigned char* values,
                                       CountersKind kind)
    : radius_(radius),
      diagonals_(diagonals),
      values_(values),
      kind_(kind),
      bytes_(kSegments + 2, static_cast<int>(kSegmentPitch)) {
  assert(radius >= 0 && radius <= 180 && static_cast<std::size_t>(CountersOf(radius)) <= 16 * kMostColumns);
  assert(std::min(radius + 1, diagonals.MostPixels()) <= 127);
  if (kind == CountersKind::kBelowWithDistances) distances_.emplace(16 * kMostColumns);
  counters_ = {bytes_.data(), Row(bytes_, kSegments + 1), distances_ ? distances_->data() : nullptr, 2};
}

void DiagonalHistograms::StartStrip(int u) {
  u_ = u;
  const int counters = CountersOf(radius_);
  for (int s = 0; s < bytes_.rows(); ++s) std::fill_n(Row(bytes_, s), counters, static_cast<unsigned char>(0));
  if (distances_) std::fill_n(distances_->data(), counters, std::uint16_t{0});
  for (int i = 0; i < radius_; ++i) Move(diagonals_.first() + i, true);
}

void DiagonalHistograms::StepTo(int d) {
  Move(d + radius_, true);
  Move(d - radius_ - 1, false);
}

HistogramRow DiagonalHistograms::PixelsOf(int d, int& x) const {
  const Columns pixels = Crossing(d, u_, u_ + kStrip);
  x = pixels.first;
  return {From(2 * x + d - radius_), 2 * radius_ + 1, pixels.end - pixels.first, false};
}

DiagonalHistograms::Columns DiagonalHistograms::Crossing(int d, int from, int end) const {
  return {std::max(diagonals_.FirstColumn(d), HalfOf(from - d)), std::min(diagonals_.EndColumn(d), HalfOf(end - d))};
}

ColumnCounters DiagonalHistograms::From(int column) const {
  const std::ptrdiff_t counter = 16 * static_cast<std::ptrdiff_t>(column - (u_ - radius_));
  std::uint16_t* const distances = counters_.distances != nullptr ? counters_.distances + counter : nullptr;
  return {counters_.fine + counter, counters_.coarse + counter, distances, counters_.step};
}

void DiagonalHistograms::Move(int d, bool enters) {
  if (d < diagonals_.first() || d >= diagonals_.end()) return;
  const Columns columns = Crossing(d, u_ - radius_, u_ + kStrip + radius_);
  if (columns.first >= columns.end) return;
  const unsigned char* const samples = values_ + diagonals_.Place(d, columns.first);
  ActiveKernels().columns.moveRow[static_cast<int>(kind_)](From(2 * columns.first + d), enters ? samples : nullptr,
                                                           enters ? nullptr : samples, columns.end - columns.first);
}

}  // namespace quentara
