#include "imageops/column_histograms.h"

#include <cstddef>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

constexpr int kSegments = 16;

int MostRows(WindowReach reach, int height) {
  return ClippedExtent(0, 2 * std::min(reach.rows, height), height);
}

ColumnCounters From(int column, const ColumnCounters& columns) {
  const std::ptrdiff_t counter = 16 * static_cast<std::ptrdiff_t>(column);
  std::uint16_t* const distances = columns.distances != nullptr ? columns.distances + counter : nullptr;
  return {columns.fine + counter, columns.coarse + counter, distances, columns.step};
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
      kind_(kind),
      counters_(kSegments + 2, static_cast<int>(kSegmentPitch)) {
  if (kind == CountersKind::kBelowWithDistances) distances_.emplace(16 * kMostColumns);
  row_.columns = {Row(counters_, 0), Row(counters_, kSegments + 1), distances_ ? distances_->data() : nullptr, 1};
  row_.side = 2 * reach_.columns + 1;
  row_.tallColumns = MostRows(reach, values.rows()) > 127;
}

void ColumnHistograms::StartStrip(int x, int width) {
  row_.width = width;
  firstColumn_ = std::max(x - reach_.columns, 0);
  columnCount_ = std::min(x + width + reach_.columns, values_.cols()) - firstColumn_;
  columns_ = From(firstColumn_ - (x - reach_.columns), row_.columns);
  const int counters = 16 * (width + row_.side);
  for (int s = 0; s < counters_.rows(); ++s) std::fill_n(Row(counters_, s), counters, static_cast<unsigned char>(0));
  if (distances_) std::fill_n(distances_->data(), counters, std::uint16_t{0});
  for (int y = 0; y <= std::min(reach_.rows, values_.rows() - 1); ++y) Move(y, -1);
}

void ColumnHistograms::StepTo(int y) {
  Prefetch(values_, y + reach_.rows + kRowsAhead, firstColumn_, columnCount_);
  Move(y + reach_.rows, y - reach_.rows - 1);
}

void ColumnHistograms::Move(int entering, int leaving) {
  const auto samples = [&](int y) { return y >= 0 && y < values_.rows() ? Row(values_, y) + firstColumn_ : nullptr; };
  const unsigned char *const in = samples(entering), *const out = samples(leaving);
  if (in != nullptr || out != nullptr)
    ActiveKernels().columns.moveRow[static_cast<int>(kind_)](columns_, in, out, columnCount_);
}

void Prefetch(const BytePlane& plane, int y, int x, int count) {
  if (y >= plane.rows()) return;
  constexpr int kCacheLine = 64;
  for (int i = 0; i < count; i += kCacheLine) __builtin_prefetch(Row(plane, y) + x + i);
}

void RangesAround(const unsigned char* centre, int limit, int count, unsigned char* __restrict lowest,
                  unsigned char* __restrict highest) {
  const auto reach = static_cast<unsigned char>(limit), most = static_cast<unsigned char>(255 - limit);
  for (int i = 0; i < count; ++i) {
    lowest[i] = static_cast<unsigned char>((centre[i] > reach ? centre[i] : reach) - reach);
    highest[i] = static_cast<unsigned char>((centre[i] < most ? centre[i] : most) + reach);
  }
}

}  // namespace quentara
