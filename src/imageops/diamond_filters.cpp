#include "imageops/diamond_filters.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdlib>

#include "imageops/direct_sums.h"
#include "imageops/method_choice.h"
#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"
#include "render/scratch.h"

namespace quentara {
namespace {

/// A window's histogram with a level in it that moves little from one window to the next, and what lies below it.
struct LevelledHistogram {
  std::array<int, 256> counts = {};
  int level = 0;
  int below = 0;     // how many samples are smaller than the level
  int belowSum = 0;  // and their sum
  int count = 0;     // of all samples
  int sum = 0;       // of all samples

  int CountOf(int value) const { return counts[static_cast<std::size_t>(value)]; }
  void Raise() {
    const int passed = CountOf(level);
    below += passed;
    belowSum += passed * level;
    ++level;
  }
  void Lower() {
    --level;
    const int passed = CountOf(level);
    below -= passed;
    belowSum -= passed * level;
  }
};

// Moves the window of (y, x - 1) to (y, x): on either side of each row one sample enters and one leaves. `inside` tells
// whether a column lies in the plane. The sums are local, as the counters might alias them otherwise.
template <class Inside>
void SlideRight(int radius, const BytePlane& values, int y, int x, const Inside& inside, LevelledHistogram& window) {
  const int level = window.level;
  int count = 0, sum = 0, below = 0, belowSum = 0;
  const auto change = [&](int sample, int step) {
    window.counts[static_cast<std::size_t>(sample)] += step;
    count += step;
    sum += step * sample;
    const int isBelow = sample < level ? 1 : 0;  // multiplied, as a branch here is wrong half the time
    below += step * isBelow;
    belowSum += step * isBelow * sample;
  };
  for (int row = std::max(y - radius, 0); row <= std::min(y + radius, values.rows() - 1); ++row) {
    const int reach = radius - std::abs(row - y), entering = x + reach, leaving = x - 1 - reach;
    if (inside(entering)) change(Row(values, row)[entering], 1);
    if (inside(leaving)) change(Row(values, row)[leaving], -1);
  }
  window.count += count, window.sum += sum, window.below += below, window.belowSum += belowSum;
}

// Calls readOut(y, x, histogram) for every pixel, row by row, with the histogram of its clipped window.
template <class ReadOut>
void SlideDiamond(int radius, const BytePlane& values, const ReadOut& readOut) {
  const int width = values.cols();
  for (int y = 0; y < values.rows(); ++y) {
    LevelledHistogram window;
    for (int x = -radius; x < width; ++x) {
      if (x > radius && x < width - radius)
        SlideRight(
            radius, values, y, x, [](int) { return true; }, window);
      else
        SlideRight(
            radius, values, y, x, [&](int column) { return column >= 0 && column < width; }, window);
      if (x >= 0) readOut(y, x, window);
    }
  }
}

int MedianRankOf(int count, int radius, int y, int x, const BytePlane& plane) {
  const auto atEdge = [&](int position, int size) { return position < radius || position >= size - radius; };
  return atEdge(y, plane.rows()) && atEdge(x, plane.cols()) ? (count - 1) / 2 : count / 2;
}

void MedianFromSlidingHistogram(int radius, const BytePlane& plane, BytePlane& result) {
  SlideDiamond(radius, plane, [&](int y, int x, LevelledHistogram& window) {
    const int rank = MedianRankOf(window.count, radius, y, x, plane);
    while (window.below > rank) window.Lower();
    while (window.below + window.CountOf(window.level) <= rank) window.Raise();
    Row(result, y)[x] = static_cast<unsigned char>(window.level);
  });
}

void DeviationFromSlidingHistogram(int radius, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  SlideDiamond(radius, values, [&](int y, int x, LevelledHistogram& window) {
    const int median = Row(medians, y)[x];
    while (window.level < median) window.Raise();
    while (window.level > median) window.Lower();
    const int distances = window.sum - 2 * window.belowSum + median * (2 * window.below - window.count);
    Row(result, y)[x] = static_cast<float>(distances) / static_cast<float>(window.count);
  });
}

/// Small windows, sample by sample for all pixels of a row at a time.
class DirectDiamonds {
 public:
  DirectDiamonds(int radius, const BytePlane& plane)
      : radius_(radius), height_(plane.rows()), width_(plane.cols()), padded_(PadRows(plane, radius)) {}

  // Calls add(taps, samples) for the samples of all windows of row y: samples[x] .. samples[x + taps - 1] for pixel x.
  template <class Add>
  void ForTaps(int y, const Add& add) const {
    ForRows(y, [&](int row, int reach) {
      const int side = 2 * reach + 1;
      for (int tap = 0; tap < side; tap += kMostTaps)
        add(std::min(kMostTaps, side - tap), Row(padded_, row) + radius_ - reach + tap);
    });
  }

  // Calls visit(x, inside, outside) with the numbers of samples of each window of row y inside the plane and in the
  // padding, which are zeros. Away from the edges they are the same from row to row.
  template <class Visit>
  void ForCounts(int y, const Visit& visit) const {
    int all = 0;
    ForRows(y, [&](int, int reach) { all += 2 * reach + 1; });
    for (int x = 0; x < width_; ++x) {
      int inside = all;
      if (x < radius_ || x >= width_ - radius_) {
        inside = 0;
        ForRows(y, [&](int, int reach) { inside += ClippedExtent(x, reach, width_); });
      }
      visit(x, inside, all - inside);
    }
  }

 private:
  template <class Visit>
  void ForRows(int y, const Visit& visit) const {
    for (int row = std::max(y - radius_, 0); row <= std::min(y + radius_, height_ - 1); ++row)
      visit(row, radius_ - std::abs(row - y));
  }

  const int radius_, height_, width_;
  const BytePlane padded_;
};

void SetTrials(const unsigned char* medians, int bit, unsigned char* __restrict trials, int width) {
  for (int x = 0; x < width; ++x) trials[x] = static_cast<unsigned char>(medians[x] + bit - 1);
}

void SettleBit(const unsigned char* counts, const unsigned char* ranks, int bit, unsigned char* __restrict medians,
               int width) {
  for (int x = 0; x < width; ++x)
    medians[x] = static_cast<unsigned char>(medians[x] + (counts[x] <= ranks[x] ? bit : 0));
}

// Settles the medians bit by bit from the highest: a bit is set when too few samples lie below the value with it.
void MedianFromCounts(int radius, const BytePlane& plane, BytePlane& result) {
  const int height = plane.rows(), width = plane.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const DirectDiamonds diamonds(radius, plane);
  const auto count = static_cast<std::size_t>(width);
  Scratch<unsigned char> ranks(count), trials(count), counts(count);
  for (int y = 0; y < height; ++y) {
    // The padding's zeros are never above a trial.
    if (y <= radius || y >= height - radius)
      diamonds.ForCounts(y, [&](int x, int inside, int outside) {
        ranks[x] = static_cast<unsigned char>(MedianRankOf(inside, radius, y, x, plane) + outside);
      });
    unsigned char* const medians = Row(result, y);
    std::fill_n(medians, count, static_cast<unsigned char>(0));
    for (int bit = 128; bit > 0; bit /= 2) {
      SetTrials(medians, bit, trials.data(), width);
      std::fill_n(counts.data(), count, static_cast<unsigned char>(0));
      diamonds.ForTaps(y, [&](int taps, const unsigned char* samples) {
        kernels.countNotAbove[taps](samples, trials.data(), counts.data(), width);
      });
      SettleBit(counts.data(), ranks.data(), bit, medians, width);
    }
  }
}

void DeviationFromSums(int radius, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  const DirectKernels& kernels = ActiveKernels().direct;
  const DirectDiamonds diamonds(radius, values);
  Scratch<int> sums(static_cast<std::size_t>(values.cols()));
  for (int y = 0; y < values.rows(); ++y) {
    std::fill_n(sums.data(), values.cols(), 0);
    diamonds.ForTaps(y, [&](int taps, const unsigned char* samples) {
      kernels.addDistances[taps](samples, Row(medians, y), sums.data(), values.cols());
    });
    diamonds.ForCounts(y, [&](int x, int inside, int outside) {
      const int sum = sums[x] - outside * Row(medians, y)[x];
      Row(result, y)[x] = static_cast<float>(sum) / static_cast<float>(inside);
    });
  }
}

}  // namespace

BytePlane DiamondMedianFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  BytePlane result(plane.rows(), plane.cols());
  if (radius <= kMostRadiusOfDirectDiamondMedian)
    MedianFromCounts(radius, plane, result);
  else
    MedianFromSlidingHistogram(radius, plane, result);
  return result;
}

FloatPlane DiamondDeviationFilter(int radius, const BytePlane& values, const BytePlane& medians) {
  assert(radius >= 0 && SameSize(values, medians));
  FloatPlane result(values.rows(), values.cols());
  if (radius <= kMostRadiusOfDirectDiamondDeviation)
    DeviationFromSums(radius, values, medians, result);
  else
    DeviationFromSlidingHistogram(radius, values, medians, result);
  return result;
}

}  // namespace quentara
