#include "outlines/scratchboard_outlines.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "blur/small_smooth.h"
#include "imageops/banded_filters.h"
#include "imageops/byte_map.h"
#include "imageops/luma.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

// The highest black level for each level of the neighbourhood, -1 where all is white.
using CutMap = std::array<short, 256>;

template <class Term>
float RunningMean(const BytePlane& plane, const Term& term) {
  float sum = 0.0f;
  std::for_each_n(plane.data(), plane.numElements(), [&](Byte sample) { sum += static_cast<float>(term(sample)); });
  return sum / static_cast<float>(plane.numElements());
}

float MeanDeviation(const BytePlane& plane) {
  const float mean = RunningMean(plane, [](Byte sample) { return sample; });
  const ByteMap distances =
      MakeByteMap([&](int sample) { return ToByte(std::abs(static_cast<float>(sample) - mean)); });
  return RunningMean(plane, [&](Byte sample) { return distances[sample]; });
}

float HighestBlack(float local, float tone, float push) {
  const float offset = push * 127.5f * (tone - local);
  if (local > tone) return std::ceil(local + offset / (255.0f - tone)) - 1.0f;
  if (local < tone) return std::floor(local + offset / tone);
  return local;
}

CutMap MakeCutMap(float tone, float push) {
  CutMap cuts;
  for (int local = 0; local < 256; ++local)
    cuts[static_cast<std::size_t>(local)] =
        static_cast<short>(std::clamp(HighestBlack(static_cast<float>(local), tone, push), -1.0f, 255.0f));
  return cuts;
}

BytePlane Neighbourhoods(int style, int focus, const BytePlane& values) {
  if (style != kSmooth) return MedianInBands(focus, values);
  return FilterInBands(
      focus, [&](const BytePlane& band) { return BinomialSmooth(focus, band); }, values);
}

void CutRun(const CutMap& cuts, const Byte* local, Byte* __restrict values, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) values[i] = values[i] > cuts[local[i]] ? 255 : 0;
}

// Samples are 0 or 255, so whole conditions are bits.
void ClearHairsOfRow(const Byte* above, const Byte* row, const Byte* below, Byte* __restrict cleared, int width) {
  for (int x = 2; x < width - 2; ++x) {
    const int upright = ~(above[x] | row[x] | below[x]) & above[x - 1] & row[x - 1] & below[x - 1] & above[x + 1] &
                        row[x + 1] & below[x + 1];
    const int level = ~(row[x - 1] | row[x] | row[x + 1]) & above[x - 1] & above[x] & above[x + 1] & below[x - 1] &
                      below[x] & below[x + 1];
    cleared[x] = static_cast<Byte>(row[x] | upright | level);
  }
}

void ClearHairs(const BytePlane& lines, BytePlane& cleared) {
  const int height = lines.rows(), width = lines.cols();
  ForRowBands(height, [&](int first, int count) {
    std::copy_n(Row(lines, first), static_cast<std::ptrdiff_t>(count) * width, Row(cleared, first));
    for (int y = std::max(first, 2); y < std::min(first + count, height - 2); ++y)
      ClearHairsOfRow(Row(lines, y - 1), Row(lines, y), Row(lines, y + 1), Row(cleared, y), width);
  });
}

}  // namespace

ChannelSet ScratchboardOutlines(const ScratchboardOutlineSettings& settings, const OutlineColor& color,
                                const ChannelSet& outlineSource, const ChannelSet& picture) {
  const auto power = static_cast<float>(std::pow(10.0, static_cast<double>((5.0f - settings.detail) / 5.0f)));
  const float push = MeanDeviation(LumaPlane601(outlineSource)) * ((power - 1.0f) * 10.0f / 9.0f / 200.0f);
  const ChannelSet mask = ScratchMask(settings.threshold * 255.0f, settings.style, push, settings.focus, outlineSource);
  return CompositeOutlineMask(picture, mask, settings.antialias, settings.transparency, color);
}

ChannelSet ScratchMask(float tone, int style, float push, int focus, const ChannelSet& image) {
  assert(image.HasMode("RGB") && focus >= 1);
  BytePlane values(BrightestPlane(image));
  const CutMap cuts = MakeCutMap(tone, push);
  const BytePlane local(Neighbourhoods(style, focus, values));
  ForSampleBands(values, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    CutRun(cuts, local.data() + first, values.data() + first, count);
  });
  Plugin::CheckStop();
  ChannelSet mask("L", image.width(), image.height());
  ClearHairs(values, mask.planes(0));
  return mask;
}

}  // namespace quentara
