#include "outlines/shadow_outlines.h"

#include "outlines/shadow_mask.h"

namespace quentara {

ChannelSet ShadowOutlines(const ShadowOutlineSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                          const ChannelSet& outlineSource, const ChannelSet& picture) {
  const ChannelSet mask = ShadowMask(ShadowCut(toneLevels, settings.threshold), outlineSource);
  return CompositeOutlineMask(picture, mask, settings.antialias, settings.transparency, color);
}

}  // namespace quentara
