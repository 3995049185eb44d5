#include "outlines/woodcut_outlines.h"

#include <cstddef>

#include "imageops/byte_map.h"
#include "outlines/ink_levels.h"
#include "outlines/shadow_mask.h"
#include "outlines/thick_line_mask.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

// What is lit keeps its drawing, shadows take the other one turned over; all samples are 0 or 255, so bits choose.
void CutIntoShadowsRun(const Byte* lit, const Byte* negative, Byte* __restrict drawing, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    drawing[i] = static_cast<Byte>((lit[i] & drawing[i]) | ~(lit[i] | negative[i]));
}

}  // namespace

ChannelSet WoodcutOutlines(const WoodcutOutlineSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                           const PointList& skinPoints, const BlurSettings* blur, const ChannelSet& source,
                           const ChannelSet& outlineSource, const ChannelSet& picture) {
  const Ink ink = InkLevels(settings.sensitivity, settings.strength);
  const auto draw = [&](const ChannelSet& tones) {
    return InkThreshold(ink, ThickLineMask(settings.thickness, tones, settings.quality));
  };
  ChannelSet tones = InkTones(ink.level, skinPoints, blur, source);
  ChannelSet mask = draw(tones);
  MapBytesOf(tones, MakeByteMap([](int sample) { return static_cast<Byte>(255 - sample); }));
  const ChannelSet negative = draw(tones);
  const ChannelSet lit = ShadowMask(ShadowCut(toneLevels, settings.threshold), outlineSource);
  ForSampleBands(mask.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    CutIntoShadowsRun(lit.planes(0).data() + first, negative.planes(0).data() + first, mask.planes(0).data() + first,
                      count);
  });
  return CompositeOutlineMask(picture, mask, settings.antialias, settings.transparency, color);
}

}  // namespace quentara
