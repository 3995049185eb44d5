#include "imageops/column_counters.h"

#include <algorithm>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

std::size_t CoarseCounters(bool kept) {
  return kept ? kCoarseSegments * kMostColumns : 0;
}

}  // namespace

ColumnCounterMemory::ColumnCounterMemory(CountersKind kind, std::size_t step)
    : kind_(kind),
      fineLanes_(ActiveKernels().columns.fineLanes[static_cast<int>(kind)]),
      fine_(static_cast<std::size_t>(256 / fineLanes_ + 1) * SegmentPitch(fineLanes_)),
      coarse_(CoarseCounters(kind != CountersKind::kEach)),
      distances_(CoarseCounters(kind == CountersKind::kBelowWithDistances)),
      first_{fine_.data(), coarse_.data(), distances_.data(), step} {}

void ColumnCounterMemory::Clear(int columns) {
  for (int s = 0; s < 256 / fineLanes_; ++s)
    std::fill_n(first_.fine + static_cast<std::size_t>(s) * SegmentPitch(fineLanes_), fineLanes_ * columns,
                static_cast<unsigned char>(0));
  const int counters = kCoarseSegments * columns;
  if (kind_ != CountersKind::kEach) std::fill_n(first_.coarse, counters, static_cast<unsigned char>(0));
  if (kind_ == CountersKind::kBelowWithDistances) std::fill_n(first_.distances, counters, std::uint16_t{0});
}

ColumnCounters ColumnCounterMemory::From(int column) const {
  const std::ptrdiff_t counter = kCoarseSegments * static_cast<std::ptrdiff_t>(column);
  const bool below = kind_ != CountersKind::kEach, distances = kind_ == CountersKind::kBelowWithDistances;
  return {first_.fine + fineLanes_ * static_cast<std::ptrdiff_t>(column), below ? first_.coarse + counter : nullptr,
          distances ? first_.distances + counter : nullptr, first_.step};
}

void ColumnCounterMemory::Move(int column, const unsigned char* entering, const unsigned char* leaving,
                               int count) const {
  if (entering != nullptr || leaving != nullptr)
    ActiveKernels().columns.moveRow[static_cast<int>(kind_)](From(column), entering, leaving, count);
}

}  // namespace quentara
