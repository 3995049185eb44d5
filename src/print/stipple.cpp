#include "print/stipple.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>

#include "imageops/byte_map.h"
#include "print/noise.h"
#include "print/stipple_seed.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

std::uint32_t NextSeed(std::uint32_t seed) {
  return static_cast<std::uint32_t>(static_cast<float>(seed) * 2.0f / 3.0f + 0.5f);
}

ByteMap LiftMap(float lift) {
  return MakeByteMap([&](int sample) { return ToByte(std::clamp(static_cast<float>(sample) + lift, 0.0f, 255.0f)); });
}

// 255 where one of the channels is above the cut, else 0.
void MarkSpecks(const ChannelSet& source, const ByteMap& lift, std::uint32_t seed, float cut, int first, int rows,
                BytePlane& specks) {
  const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(rows) * specks.cols();
  Byte* const marks = Row(specks, first);
  std::fill_n(marks, count, Byte{0});
  BytePlane lifted(rows, specks.cols());
  for (int i = 0; i < 3; ++i, seed = NextSeed(seed)) {
    const Byte* const samples = Row(source.planes(i), first);
    std::transform(samples, samples + count, lifted.data(), [&](Byte sample) { return lift[sample]; });
    const BytePlane dots(NoiseDots(lifted, seed, first));
    std::transform(marks, marks + count, dots.data(), marks,
                   [&](Byte mark, Byte dot) { return static_cast<float>(dot) > cut ? Byte{255} : mark; });
  }
}

/// A disc by its rows: value(dy, dx) for 0 <= dy <= radius, 0 <= dx <= radius + 1, the last of them 255.
BytePlane QuarterDisc(int radius) {
  const int reach = 3 * radius + 1;
  BytePlane disc(radius + 1, radius + 2);
  disc = 255;
  for (int dy = 0; dy <= radius; ++dy)
    for (int dx = 0; dx <= radius; ++dx) {
      int outside = 0;
      for (int y = 3 * dy - 1; y <= 3 * dy + 1; ++y)
        for (int x = 3 * dx - 1; x <= 3 * dx + 1; ++x) outside += y * y + x * x > reach * reach ? 1 : 0;
      disc(dy, dx) = ToByte(static_cast<float>(255 * outside) / 9.0f);
    }
  return disc;
}

// The distance of each sample of a row to the nearest 0, at most `most`.
void DistancesInRow(const Byte* samples, int most, Byte* distances, int width) {
  int distance = most;
  for (int x = 0; x < width; ++x)
    distances[x] = static_cast<Byte>(distance = samples[x] == 0 ? 0 : std::min(distance + 1, most));
  for (int x = width - 1; x >= 0; --x)
    distances[x] = static_cast<Byte>(distance = std::min<int>(distances[x], std::min(distance + 1, most)));
}

}  // namespace

BytePlane DiscStamp(int radius, const BytePlane& plane) {
  assert(radius >= 1 && radius <= 254);
  const BytePlane disc(QuarterDisc(radius));
  BytePlane distances(plane.rows(), plane.cols()), stamped(plane.copy());
  for (int y = 0; y < plane.rows(); ++y) DistancesInRow(Row(plane, y), radius + 1, Row(distances, y), plane.cols());
  for (int y = 0; y < plane.rows(); ++y) {
    Byte* const out = Row(stamped, y);
    const int last = std::min(y + radius, plane.rows() - 1);
    for (int row = std::max(y - radius, 0); row <= last; ++row) {
      const Byte* const values = Row(disc, std::abs(row - y));
      const Byte* const near = Row(distances, row);
      for (int x = 0; x < plane.cols(); ++x) out[x] = std::min(out[x], values[near[x]]);
    }
  }
  return stamped;
}

ChannelSet StippleMask(const StippleSettings& settings, const Tones& toneLevels, std::uint32_t seed,
                       const ChannelSet& outlineSource) {
  assert(settings.dotSize >= 1);
  const float spread = toneLevels.spread == 0.0f ? 15.0f : toneLevels.spread;
  const ByteMap lift = LiftMap((1.0f - settings.density) * 7.5f * spread);
  const float level = std::floor(toneLevels.median + (settings.thresh * 10.0f - 5.5f) * spread) + 0.5f;
  const float cut = std::clamp(level, 1.5f, 253.5f);
  ChannelSet mask("L", outlineSource.width(), outlineSource.height());
  BytePlane& specks = mask.planes(0);
  ForRowBands(specks.rows(),
              [&](int first, int rows) { MarkSpecks(outlineSource, lift, seed, cut, first, rows, specks); });
  const int radius = settings.dotSize - 1;
  if (radius > 0)
    specks.reference(FilterInBands(
        radius, [&](const BytePlane& band) { return DiscStamp(radius, band); }, specks));
  return mask;
}

ChannelSet StipplePattern(const StippleSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                          const ChannelSet& outlineSource, const ChannelSet& picture) {
  const ChannelSet mask = StippleMask(settings, toneLevels, StippleSeed(), outlineSource);
  return CompositeOutlineMask(picture, mask, 0.0f, settings.transparency, color);
}

}  // namespace quentara
