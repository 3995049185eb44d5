#include "imageops/diagonal_histograms.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "imageops/diamond_window.h"

namespace quentara {
namespace {

// The columns of a strip, and those that the windows reach and the last step enters.
int ColumnsOf(int radius) {
  return DiagonalHistograms::kStrip + 2 * radius + 4;
}

// Half of a number, rounded up.
int HalfOf(int number) {
  return (number + 1) >> 1;
}

}  // namespace

DiagonalHistograms::DiagonalHistograms(int radius, const Diagonals& diagonals, const unsigned char* values,
                                       CountersKind kind)
    : radius_(radius), diagonals_(diagonals), values_(values), counters_(kind, 2) {
  assert(radius >= 0 && radius <= 180 && static_cast<std::size_t>(ColumnsOf(radius)) <= kMostColumns);
  assert(std::min(radius + 1, diagonals.MostPixels()) <= 127);
}

void DiagonalHistograms::StartStrip(int u) {
  u_ = u;
  counters_.Clear(ColumnsOf(radius_));
  for (int i = 0; i < radius_; ++i) Move(diagonals_.first() + i, true);
}

void DiagonalHistograms::StepTo(int d) {
  Move(d + radius_, true);
  Move(d - radius_ - 1, false);
}

HistogramRow DiagonalHistograms::PixelsOf(int d, int& x) const {
  const Columns pixels = Crossing(d, u_, u_ + kStrip);
  x = pixels.first;
  return {counters_.From(PlaceOf(2 * x + d - radius_)), 2 * radius_ + 1, pixels.end - pixels.first, false,
          DiamondWindow::WholeSize(radius_)};
}

DiagonalHistograms::Columns DiagonalHistograms::Crossing(int d, int from, int end) const {
  return {std::max(diagonals_.FirstColumn(d), HalfOf(from - d)), std::min(diagonals_.EndColumn(d), HalfOf(end - d))};
}

void DiagonalHistograms::Move(int d, bool enters) {
  if (d < diagonals_.first() || d >= diagonals_.end()) return;
  const Columns columns = Crossing(d, u_ - radius_, u_ + kStrip + radius_);
  if (columns.first >= columns.end) return;
  const unsigned char* const samples = values_ + diagonals_.Place(d, columns.first);
  counters_.Move(PlaceOf(2 * columns.first + d), enters ? samples : nullptr, enters ? nullptr : samples,
                 columns.end - columns.first);
}

}  // namespace quentara
