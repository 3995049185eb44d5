#include "outlines/woodcut_outlines.h"

#include <cstddef>

#include "imageops/byte_map.h"
#include "outlines/ink_levels.h"
#include "outlines/shadow_mask.h"
#include "outlines/thick_line_mask.h"
#include "render/bands.h"

namespace quentara {
namespace {

// What is lit keeps its drawing, shadows take the other one turned over; all samples are 0 or 255, so bits choose.
void CutIntoShadows(const BytePlane& lit, const BytePlane& negative, BytePlane& drawing) {
  ForSampleBands(drawing, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    const unsigned char* const light = lit.data() + first;
    const unsigned char* const turned = negative.data() + first;
    unsigned char* const lines = drawing.data() + first;
    for (std::ptrdiff_t i = 0; i < count; ++i)
      lines[i] = static_cast<unsigned char>((light[i] & lines[i]) | ~(light[i] | turned[i]));
  });
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
  MapBytesOf(tones, MakeByteMap([](int sample) { return static_cast<unsigned char>(255 - sample); }));
  const ChannelSet negative = draw(tones);
  const ChannelSet lit = ShadowMask(ShadowCut(toneLevels, settings.threshold), outlineSource);
  CutIntoShadows(lit.planes(0), negative.planes(0), mask.planes(0));
  return CompositeOutlineMask(picture, mask, settings.antialias, settings.transparency, color);
}

}  // namespace quentara
