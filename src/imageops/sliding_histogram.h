/// The sliding window histogram of Huang, Yang and Tang (1979): any window, O(height of the window) per pixel.
///
/// Serves the windows that are too large for the counters of the column histograms.
#pragma once

#include <algorithm>
#include <array>

#include "imageops/window_reach.h"
#include "render/plane.h"

namespace quentara {

using Histogram = std::array<int, 256>;  ///< how often each sample value occurs in a window

/// Calls readOut(y, x, histogram) for every pixel of `result`, row by row, with the histogram of its clipped window in
/// `values`.
template <class T, class ReadOut>
void SlideHistogram(WindowReach reach, const BytePlane& values, ResultRows<T> result, const ReadOut& readOut) {
  const int height = values.rows(), width = values.cols();
  for (int y = result.first; y < result.end(); ++y) {
    const int top = std::max(y - reach.rows, 0), bottom = std::min(y + reach.rows, height - 1);
    Histogram histogram = {};
    const auto count = [&](int column, int step) {
      for (int row = top; row <= bottom; ++row) histogram[Row(values, row)[column]] += step;
    };
    for (int x = 0; x <= std::min(reach.columns, width - 1); ++x) count(x, 1);
    for (int x = 0; x < width; ++x) {
      readOut(y, x, histogram);
      if (x - reach.columns >= 0) count(x - reach.columns, -1);
      if (x + reach.columns + 1 < width) count(x + reach.columns + 1, 1);
    }
  }
}

/// The smallest value with more than `rank` samples at or below it, from `value` on, `below` samples being smaller.
inline int ValueOfRank(const Histogram& histogram, int rank, int value = 0, int below = 0) {
  while (below + histogram[value] <= rank) below += histogram[value++];
  return value;
}

}  // namespace quentara
