#include "imageops/diamond_filters.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdlib>

#include "imageops/window_reach.h"

namespace quentara {
namespace {

/// A window's histogram with a level in it that moves little from one window to the next, and what lies below it.
struct LevelledHistogram {
  std::array<int, 256> counts = {};
  int count = 0;  // of all samples
  int sum = 0;    // of all samples
  int level = 0;
  int below = 0;     // how many samples are smaller than the level
  int belowSum = 0;  // and their sum

  void Change(int sample, int step) {
    counts[static_cast<std::size_t>(sample)] += step;
    count += step;
    sum += step * sample;
    const int counted = sample < level ? step : 0;
    below += counted;
    belowSum += counted * sample;
  }
  void Raise() {
    below += counts[static_cast<std::size_t>(level)];
    belowSum += counts[static_cast<std::size_t>(level)] * level;
    ++level;
  }
  void Lower() {
    --level;
    below -= counts[static_cast<std::size_t>(level)];
    belowSum -= counts[static_cast<std::size_t>(level)] * level;
  }
};

// Calls readOut(y, x, histogram) for every pixel, row by row, with the histogram of its clipped window.
template <class ReadOut>
void SlideDiamond(int radius, const BytePlane& values, const ReadOut& readOut) {
  const int height = values.rows(), width = values.cols();
  for (int y = 0; y < height; ++y) {
    const int top = std::max(y - radius, 0), bottom = std::min(y + radius, height - 1);
    LevelledHistogram window;
    const auto slide = [&](int x, const auto& inside) {  // from x - 1 to x
      for (int row = top; row <= bottom; ++row) {
        const int reach = radius - std::abs(row - y), entering = x + reach, leaving = x - 1 - reach;
        if (inside(entering)) window.Change(Row(values, row)[entering], 1);
        if (inside(leaving)) window.Change(Row(values, row)[leaving], -1);
      }
    };
    for (int x = -radius; x < width; ++x) {
      if (x > radius && x < width - radius)
        slide(x, [](int) { return true; });
      else
        slide(x, [&](int column) { return column >= 0 && column < width; });
      if (x >= 0) readOut(y, x, window);
    }
  }
}

}  // namespace

BytePlane DiamondMedianFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  BytePlane result(plane.rows(), plane.cols());
  const auto atEdge = [&](int position, int size) { return position < radius || position >= size - radius; };
  SlideDiamond(radius, plane, [&](int y, int x, LevelledHistogram& window) {
    const bool corner = atEdge(y, plane.rows()) && atEdge(x, plane.cols());
    const int rank = corner ? (window.count - 1) / 2 : window.count / 2;
    while (window.below > rank) window.Lower();
    while (window.below + window.counts[static_cast<std::size_t>(window.level)] <= rank) window.Raise();
    Row(result, y)[x] = static_cast<unsigned char>(window.level);
  });
  return result;
}

FloatPlane DiamondDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians) {
  assert(radius >= 0 && SameSize(values, medians));
  FloatPlane result(values.rows(), values.cols());
  SlideDiamond(radius, values, [&](int y, int x, LevelledHistogram& window) {
    const int median = Row(medians, y)[x];
    while (window.level < median) window.Raise();
    while (window.level > median) window.Lower();
    const int distances = window.sum - 2 * window.belowSum + median * (2 * window.below - window.count);
    Row(result, y)[x] = static_cast<float>(distances) / static_cast<float>(window.count);
  });
  return result;
}

}  // namespace quentara
