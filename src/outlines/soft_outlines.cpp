#include "outlines/soft_outlines.h"

#include "outlines/soft_line_merge.h"

namespace quentara {

ChannelSet SoftOutlines(const SoftOutlineSettings& settings, const OutlineColor& color, const ChannelSet& outlineSource,
                        const ChannelSet& picture) {
  const SoftLines soft = FindSoftLines(settings.strength, settings.thickness, settings.quality, outlineSource);
  ChannelSet result = color.colorClass == OutlineColorClass::Black
                          ? SoftLineOnValue(soft, picture)
                          : OverlayOutlineColor(picture, SoftLineMerge(soft), color);
  if (settings.transparency > 0.0f) MixImages(picture, result, 1.0f - settings.transparency);
  return result;
}

}  // namespace quentara
