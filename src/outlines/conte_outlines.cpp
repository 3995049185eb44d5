#include "outlines/conte_outlines.h"

#include <cassert>
#include <cstddef>
#include <cstdlib>

#include "imageops/byte_map.h"
#include "imageops/luma.h"
#include "outlines/soft_line_merge.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

ChannelSet Negative(const ChannelSet& image) {
  ChannelSet negative = image;
  MapBytesOf(negative, NegativeMap());
  return negative;
}

struct Lumas {
  const Byte* dark;
  const Byte* light;
  const Byte* picture;
};

// A share of 0 or 1 gives the one drawing back unchanged, so a pixel that only one of them touched needs no case of
// its own.
void MergeRun(const Lumas& lumas, const Byte* light, Byte* __restrict dark, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const int darkMove = std::abs(lumas.dark[i] - lumas.picture[i]);
    const int moves = darkMove + std::abs(lumas.light[i] - lumas.picture[i]);
    const float share = static_cast<float>(moves == 0 ? 1 : darkMove) / static_cast<float>(moves == 0 ? 1 : moves);
    dark[i] = ToByte(share * dark[i] + (1.0f - share) * light[i]);
  }
}

}  // namespace

void CrayonMerge(ChannelSet& dark, const ChannelSet& light, const ChannelSet& picture) {
  assert(dark.HasMode("RGB") && SameSize(dark.planes(0), light.planes(0)) &&
         SameSize(dark.planes(0), picture.planes(0)));
  Plugin::CheckStop();
  const BytePlane darkLuma(LumaPlane601(dark)), lightLuma(LumaPlane601(light)), pictureLuma(LumaPlane601(picture));
  ForSampleBands(darkLuma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    const Lumas lumas = {darkLuma.data() + first, lightLuma.data() + first, pictureLuma.data() + first};
    for (int i = 0; i < 3; ++i) MergeRun(lumas, light.planes(i).data() + first, dark.planes(i).data() + first, count);
  });
}

ChannelSet ConteOutlines(const ConteOutlineSettings& settings, const OutlineColor& color,
                         const ChannelSet& outlineSource, const ChannelSet& picture) {
  const auto draw = [&](float strength, int thickness, const ChannelSet& image, const OutlineColor& crayon) {
    return OverlayOutlineColor(picture, SoftLineMerge(FindSoftLines(strength, thickness, settings.quality, image)),
                               crayon);
  };
  ChannelSet result = draw(settings.darkStrength, settings.darkThickness, outlineSource, color);
  const ChannelSet light = draw(settings.lightStrength, settings.lightThickness, Negative(outlineSource),
                                MakeOutlineColor(settings.lightColor));
  CrayonMerge(result, light, picture);
  if (settings.transparency > 0.0f) MixImages(picture, result, 1.0f - settings.transparency);
  return result;
}

}  // namespace quentara
