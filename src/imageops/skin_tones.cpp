#include "imageops/skin_tones.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "imageops/histogram.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"

namespace quentara {
namespace {

// The sums are exact and each mean is rounded once: a running sum of floats would stall on a large plane.
Tones TonesOfPlane(const BytePlane& plane) {
  Histogram histogram{};
  std::for_each_n(plane.data(), plane.numElements(), [&](unsigned char sample) { ++histogram[sample]; });
  const auto mean = [&](const auto& term) {
    std::int64_t sum = 0;
    for (int sample = 0; sample < 256; ++sample)
      sum += std::int64_t{histogram[static_cast<std::size_t>(sample)]} * term(sample);
    return static_cast<double>(sum) / static_cast<double>(plane.numElements());
  };
  const int median = static_cast<int>(mean([](int sample) { return sample; }) + 0.5);
  if (median < 100) return {100.0f, 0.0f};
  const double spread = mean([&](int sample) { return std::abs(sample - median); });
  return {static_cast<float>(median), static_cast<float>(spread)};
}

// Of the samples at some points. Which worker counts a point does not matter.
Histogram HistogramAt(const PointList& points, const BytePlane& plane) {
  std::vector<Histogram> parts(static_cast<std::size_t>(std::max(Plugin::ThreadCount(), 1)), Histogram{});
  RunInWorkers(static_cast<int>(parts.size()), [&](int index, int count) {
    const auto first = [&](int worker) {
      return points.size() * static_cast<std::size_t>(worker) / static_cast<std::size_t>(count);
    };
    Histogram histogram{};
    for (std::size_t i = first(index); i < first(index + 1); ++i) ++histogram[plane.data()[points[i]]];
    parts[static_cast<std::size_t>(index)] = histogram;
  });
  for (std::size_t part = 1; part < parts.size(); ++part)
    for (std::size_t value = 0; value < parts[0].size(); ++value) parts[0][value] += parts[part][value];
  return parts[0];
}

}  // namespace

PointList SkinPointList(const BytePlane& red, const BytePlane& green, const BytePlane& blue) {
  assert(SameSize(red, green) && SameSize(red, blue));
  const int width = red.cols();
  std::vector<PointList> lists(static_cast<std::size_t>(std::max(Plugin::ThreadCount(), 1)));
  RunInWorkers(static_cast<int>(lists.size()), [&](int index, int count) {
    const auto firstRow = [&](int worker) { return static_cast<int>(std::int64_t{red.rows()} * worker / count); };
    std::vector<unsigned char> marks(static_cast<std::size_t>(width));
    PointList rowPoints(static_cast<std::size_t>(width) + 1);
    for (int y = firstRow(index); y < firstRow(index + 1); ++y) {
      ActiveKernels().pixel.markSkin({Row(red, y), Row(green, y), Row(blue, y)}, marks.data(), width);
      // Every pixel is written and the next one overwrites it unless it is skin: the test of a branch would often miss.
      std::size_t found = 0;
      for (int x = 0; x < width; found += marks[static_cast<std::size_t>(x++)]) rowPoints[found] = y * width + x;
      PointList& list = lists[static_cast<std::size_t>(index)];
      list.insert(list.end(), rowPoints.begin(), rowPoints.begin() + static_cast<std::ptrdiff_t>(found));
    }
  });
  for (std::size_t i = 1; i < lists.size(); ++i) lists[0].insert(lists[0].end(), lists[i].begin(), lists[i].end());
  return std::move(lists[0]);
}

float MedianTone(const PointList& points, const BytePlane& plane) {
  assert(plane.numElements() > 0);
  if (points.empty()) return TonesOfPlane(plane).median;
  return static_cast<float>(LowerMedian(HistogramAt(points, plane)));
}

Tones ToneLevels(const PointList& points, const BytePlane& plane) {
  assert(plane.numElements() > 0);
  if (points.empty()) return TonesOfPlane(plane);
  const unsigned char* const samples = plane.data();
  const int median = LowerMedian(HistogramAt(points, plane));
  float sum = 0.0f;
  for (const int point : points) sum += static_cast<float>(std::abs(samples[point] - median));
  return {static_cast<float>(median), sum / static_cast<float>(points.size())};
}

}  // namespace quentara
