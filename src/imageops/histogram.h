/// Counts of the 256 values of a byte.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "render/plane.h"

namespace quentara {

using Histogram = std::array<std::int32_t, 256>;

inline Histogram CountSamples(const BytePlane& plane) {
  Histogram histogram = {};
  for (std::ptrdiff_t i = 0, count = plane.numElements(); i < count; ++i) ++histogram[plane.data()[i]];
  return histogram;
}

/// The sample of rank (n - 1) / 2, counted from 0, of the n samples counted: of two middle ones the smaller.
/// @param histogram  not empty.
inline int LowerMedian(const Histogram& histogram) {
  const std::int64_t count = std::accumulate(histogram.begin(), histogram.end(), std::int64_t{0});
  assert(count > 0);
  std::size_t sample = 0;
  std::int64_t upTo = histogram[0];
  while (upTo <= (count - 1) / 2) upTo += histogram[++sample];
  return static_cast<int>(sample);
}

}  // namespace quentara
