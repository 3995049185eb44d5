/// The memory of histograms of neighbouring columns, laid out as the kernels in use want it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "imageops/window_kernels.h"
#include "render/scratch.h"

namespace quentara {

/// Room for kMostColumns columns, empty at first.
class ColumnCounterMemory {
 public:
  /// @param step  of ColumnCounters.
  ColumnCounterMemory(CountersKind kind, std::size_t step);

  /// Empties the first so many columns.
  void Clear(int columns);
  /// The counters from a column on.
  ColumnCounters From(int column) const;
  /// Takes a row of samples into the counters from a column on and another one out; one or both may be nullptr.
  void Move(int column, const unsigned char* entering, const unsigned char* leaving, int count) const;

 private:
  const CountersKind kind_;
  const int fineLanes_;
  Scratch<unsigned char> fine_, coarse_;
  Scratch<std::uint16_t> distances_;
  const ColumnCounters first_;
};

}  // namespace quentara
