#include "outlines/comic_outlines.h"

#include "outlines/ink_levels.h"
#include "outlines/thick_line_mask.h"

namespace quentara {

ChannelSet ComicOutlines(const ComicOutlineSettings& settings, const OutlineColor& color, const PointList& skinPoints,
                         const BlurSettings* blur, const ChannelSet& source, const ChannelSet& picture) {
  const Ink ink = InkLevels(settings.sensitivity, settings.strength);
  const ChannelSet lines =
      ThickLineMask(settings.thickness, InkTones(ink.level, skinPoints, blur, source), settings.quality);
  return CompositeOutlineMask(picture, InkThreshold(ink, lines), settings.antialias, settings.transparency, color);
}

}  // namespace quentara
