#include "outlines/shadow_mask.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "render/bands.h"

namespace quentara {

float ShadowCut(const Tones& toneLevels, float threshold) {
  const float spread = toneLevels.spread == 0.0f ? 15.0f : toneLevels.spread;
  const float k = threshold * 10.0f - 6.0f;
  return std::clamp(std::floor(toneLevels.median + k * spread) + 0.5f, 1.5f, 253.5f);
}

ChannelSet ShadowMask(float cut, const ChannelSet& image) {
  assert(image.HasMode("RGB"));
  const auto darkest = static_cast<unsigned char>(cut);
  ChannelSet mask("L", image.width(), image.height());
  ForSampleBands(mask.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    const unsigned char* const red = image.planes(0).data() + first;
    const unsigned char* const green = image.planes(1).data() + first;
    const unsigned char* const blue = image.planes(2).data() + first;
    unsigned char* const lit = mask.planes(0).data() + first;
    for (std::ptrdiff_t i = 0; i < count; ++i)
      lit[i] = std::max(std::max(red[i], green[i]), blue[i]) > darkest ? 255 : 0;
  });
  return mask;
}

}  // namespace quentara
