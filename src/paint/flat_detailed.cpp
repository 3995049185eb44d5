#include "paint/flat_detailed.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

#include "blur/small_smooth.h"
#include "imageops/histogram.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "render/bands.h"

namespace quentara {
namespace {

constexpr std::size_t kOctants = 8;

// Samples above `floorLevel` are above the level, which is that and a half, and no sample equals it.
int FloorLevel(const PointList& skinPoints, float deviation, const ChannelSet& picture) {
  const float share = static_cast<float>(skinPoints.size()) / static_cast<float>(picture.pixelCount());
  if (share < 0.1f) return static_cast<int>(std::floor(112.0f + deviation * 15.0f));
  const Tones tones = ToneLevels(skinPoints, LumaPlane601(picture));
  return static_cast<int>(std::floor(tones.median + deviation * tones.spread));
}

struct Pixels {
  Pixels(const ChannelSet& picture, std::ptrdiff_t first)
      : red(picture.planes(0).data() + first),
        green(picture.planes(1).data() + first),
        blue(picture.planes(2).data() + first) {}

  std::size_t Octant(std::ptrdiff_t i, int floorLevel) const {
    return (red[i] > floorLevel ? 1u : 0u) | (green[i] > floorLevel ? 2u : 0u) | (blue[i] > floorLevel ? 4u : 0u);
  }

  const unsigned char* red;
  const unsigned char* green;
  const unsigned char* blue;
};

using OctantHistograms = std::array<Histogram, kOctants>;

OctantHistograms CountValues(int floorLevel, const ChannelSet& picture) {
  std::vector<OctantHistograms> counts(static_cast<std::size_t>(std::max(Plugin::ThreadCount(), 1)));
  RunInWorkers(static_cast<int>(counts.size()), [&](int index, int workers) {
    const auto start = [&](std::ptrdiff_t worker) { return picture.pixelCount() * worker / workers; };
    OctantHistograms& own = counts[static_cast<std::size_t>(index)];
    const Pixels pixels(picture, 0);
    for (std::ptrdiff_t i = start(index); i < start(index + 1); ++i)
      ++own[pixels.Octant(i, floorLevel)][std::max(std::max(pixels.red[i], pixels.green[i]), pixels.blue[i])];
  });
  for (std::size_t worker = 1; worker < counts.size(); ++worker)
    for (std::size_t octant = 0; octant < kOctants; ++octant)
      std::transform(counts[0][octant].begin(), counts[0][octant].end(), counts[worker][octant].begin(),
                     counts[0][octant].begin(), std::plus<>());
  return counts[0];
}

BytePlane QuantiseOctants(int floorLevel, const ChannelSet& picture) {
  const OctantHistograms counts = CountValues(floorLevel, picture);
  std::array<unsigned char, kOctants> values{};
  for (std::size_t octant = 0; octant < kOctants; ++octant)
    if (std::any_of(counts[octant].begin(), counts[octant].end(), [](int count) { return count > 0; }))
      values[octant] = static_cast<unsigned char>(LowerMedian(counts[octant]));
  BytePlane quantised(picture.planes(0).shape());
  ForSampleBands(quantised, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    const Pixels pixels(picture, first);
    unsigned char* const result = quantised.data() + first;
    for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = values[pixels.Octant(i, floorLevel)];
  });
  return quantised;
}

}  // namespace

ChannelSet FlatDetailed(const PointList& skinPoints, float deviation, bool temporalFix, const ChannelSet& picture) {
  assert(picture.HasMode("RGB"));
  const int level = FloorLevel(skinPoints, deviation, picture);
  const BytePlane atLevel(QuantiseOctants(level, picture));
  if (!temporalFix) {
    const auto smooth = [](const BytePlane& band) { return BoxSmooth3(1, band); };
    return ReplaceValue(picture, FilterInBands(1, smooth, atLevel));
  }
  const BytePlane above(QuantiseOctants(level + 2, picture)), below(QuantiseOctants(level - 2, picture));
  FloatPlane value(atLevel.shape());
  ForSampleBands(value, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (std::ptrdiff_t i = first; i < first + count; ++i)
      value.data()[i] = 0.5f * atLevel.data()[i] + 0.25f * above.data()[i] + 0.25f * below.data()[i];
  });
  return ReplaceValue(picture, value);
}

}  // namespace quentara
