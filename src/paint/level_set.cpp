#include "paint/level_set.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace quentara {
namespace {

float RoundedQuotient(float dividend, float divisor) {
  return std::floor(dividend / divisor + 0.5f);
}

// Of the samples first .. last.
unsigned char RoundedMean(const Histogram& histogram, int first, int last) {
  std::int64_t count = 0, sum = 0;
  for (int v = first; v <= last; ++v) {
    count += histogram[static_cast<std::size_t>(v)];
    sum += std::int64_t{histogram[static_cast<std::size_t>(v)]} * v;
  }
  if (count == 0) return 0;
  return static_cast<unsigned char>(RoundedQuotient(static_cast<float>(sum), static_cast<float>(count)));
}

std::vector<unsigned char> MeansBetween(const Histogram& histogram, const std::vector<int>& thresholds) {
  std::vector<unsigned char> means;
  int first = 0;
  for (const int threshold : thresholds) {
    means.push_back(RoundedMean(histogram, first, threshold));
    first = threshold + 1;
  }
  means.push_back(RoundedMean(histogram, first, 255));
  return means;
}

}  // namespace

LevelSet EqualCountLevels(const Histogram& histogram, int count) {
  assert(count >= 2);
  const std::int64_t samples = std::accumulate(histogram.begin(), histogram.end(), std::int64_t{0});
  const auto share = static_cast<std::int64_t>(RoundedQuotient(static_cast<float>(samples), static_cast<float>(count)));
  std::vector<int> thresholds(static_cast<std::size_t>(count - 1), 255);
  int next = 0;
  for (int& threshold : thresholds) {
    std::int64_t counted = 0;
    for (int v = next; v <= 255; ++v) {
      counted += histogram[static_cast<std::size_t>(v)];
      threshold = v;
      if (counted >= share) break;
    }
    next = threshold + 1;
  }
  return {thresholds, MeansBetween(histogram, thresholds)};
}

LevelSet EvenLevels(const Histogram& histogram, int count) {
  assert(count >= 2);
  std::vector<int> thresholds(static_cast<std::size_t>(count - 1));
  int level = 0;
  for (int& threshold : thresholds) threshold = static_cast<int>(255.0 * ++level / count + 0.5);
  return {thresholds, MeansBetween(histogram, thresholds)};
}

ByteMap MapToLevels(const LevelSet& levels) {
  return MakeByteMap([&](int sample) {
    const auto level = std::lower_bound(levels.thresholds.begin(), levels.thresholds.end(), sample);
    return levels.values[static_cast<std::size_t>(level - levels.thresholds.begin())];
  });
}

}  // namespace quentara
