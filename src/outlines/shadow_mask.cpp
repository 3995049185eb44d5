#include "outlines/shadow_mask.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

void MarkLitRun(const Byte* red, const Byte* green, const Byte* blue, Byte darkest, Byte* __restrict lit,
                std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) lit[i] = std::max(std::max(red[i], green[i]), blue[i]) > darkest ? 255 : 0;
}

}  // namespace

float ShadowCut(const Tones& toneLevels, float threshold) {
  const float spread = toneLevels.spread == 0.0f ? 15.0f : toneLevels.spread;
  const float k = threshold * 10.0f - 6.0f;
  return std::clamp(std::floor(toneLevels.median + k * spread) + 0.5f, 1.5f, 253.5f);
}

ChannelSet ShadowMask(float cut, const ChannelSet& image) {
  assert(image.HasMode("RGB"));
  const auto darkest = static_cast<Byte>(cut);
  ChannelSet mask("L", image.width(), image.height());
  ForSampleBands(mask.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    MarkLitRun(image.planes(0).data() + first, image.planes(1).data() + first, image.planes(2).data() + first, darkest,
               mask.planes(0).data() + first, count);
  });
  return mask;
}

}  // namespace quentara
