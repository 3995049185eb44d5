#include "imageops/column_histograms.h"

#include <cstddef>

namespace quentara {
namespace {

int MostRows(WindowReach reach, int height) {
  return ClippedExtent(0, 2 * std::min(reach.rows, height), height);
}

}  // namespace

bool FitsColumnHistograms(WindowReach reach, int height, int width) {
  const int rows = MostRows(reach, height), columns = MostRows({reach.columns, 0}, width);
  const std::size_t side = 2 * static_cast<std::size_t>(std::min(reach.columns, width)) + 1;
  return rows <= 255 && rows * columns <= 65535 && side + kMostPixels < kMostColumns;
}

ColumnHistograms::ColumnHistograms(WindowReach reach, const BytePlane& values, CountersKind kind)
    : reach_{std::min(reach.rows, values.rows()), std::min(reach.columns, values.cols())},
      values_(values),
      counters_(kind, 1) {
  row_.columns = counters_.From(0);
  row_.side = 2 * reach_.columns + 1;
  row_.tallColumns = MostRows(reach, values.rows()) > 127;
  row_.mostSamples = MostRows(reach, values.rows()) * MostRows({reach.columns, 0}, values.cols());
}

void ColumnHistograms::StartStrip(int y, int x, int width) {
  row_.width = width;
  firstColumn_ = std::max(x - reach_.columns, 0);
  columnCount_ = std::min(x + width + reach_.columns, values_.cols()) - firstColumn_;
  padding_ = firstColumn_ - (x - reach_.columns);
  counters_.Clear(width + row_.side);
  const int top = std::max(y - reach_.rows, 0), bottom = std::min(y + reach_.rows, values_.rows() - 1);
  for (int row = top; row <= bottom; ++row) Move(row, -1);
}

void ColumnHistograms::StepTo(int y) {
  Prefetch(values_, y + reach_.rows + kRowsAhead, firstColumn_, columnCount_);
  Move(y + reach_.rows, y - reach_.rows - 1);
}

void ColumnHistograms::Move(int entering, int leaving) {
  const auto samples = [&](int y) { return y >= 0 && y < values_.rows() ? Row(values_, y) + firstColumn_ : nullptr; };
  counters_.Move(padding_, samples(entering), samples(leaving), columnCount_);
}

void Prefetch(const BytePlane& plane, int y, int x, int count) {
  if (y >= plane.rows()) return;
  constexpr int kCacheLine = 64;
  for (int i = 0; i < count; i += kCacheLine) __builtin_prefetch(Row(plane, y) + x + i);
}

}  // namespace quentara
