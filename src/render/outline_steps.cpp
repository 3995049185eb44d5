#include "render/outline_steps.h"

#include "outlines/comic_outlines.h"
#include "outlines/compositing.h"
#include "outlines/conte_outlines.h"
#include "outlines/marker_outlines.h"
#include "outlines/scratchboard_outlines.h"
#include "outlines/shadow_outlines.h"
#include "outlines/soft_outlines.h"
#include "outlines/woodcut_outlines.h"
#include "paint/crackle.h"
#include "print/stipple.h"
#include "render/progress.h"
#include "render/stage_predicates.h"

namespace quentara {
namespace {

BytePlane MarkerRegions(const MarkerOutlineSettings& s, const OutlineInputs& inputs) {
  if (inputs.crackleLines != nullptr) return *inputs.crackleLines;
  return CracklePlane(FirstCrackleRadius(s.flatness, s.separation), s.simplicity, s.separation, inputs.outlineSource);
}

}  // namespace

void ApplyOutlines(const RenderSettings& settings, const OutlineInputs& inputs, ChannelSet& picture) {
  const OutlineColor color = MakeOutlineColor(settings.outlineColor);
  const BlurSettings* const blur = OutlineBlurOf(settings);
  const ChannelSet& source = inputs.outlineSource;
  const PointList& skin = inputs.tones.skinPoints;
  const Tones& levels = inputs.tones.levels;

  if (const auto* s = settings.softOutlines; Visible(s)) picture = SoftOutlines(*s, color, source, picture);
  if (const auto* s = settings.comicOutlines; Visible(s))
    picture = ComicOutlines(*s, color, skin, blur, inputs.source, picture);
  Report(7);
  if (const auto* s = settings.markerOutlines; Visible(s))
    picture = MarkerOutlines(*s, color, MarkerRegions(*s, inputs), picture);
  if (const auto* s = settings.conteOutlines; Visible(s)) picture = ConteOutlines(*s, color, source, picture);
  Report(8);
  if (const auto* s = settings.shadowOutlines; Visible(s)) picture = ShadowOutlines(*s, color, levels, source, picture);
  if (const auto* s = settings.woodcutOutlines; Visible(s))
    picture = WoodcutOutlines(*s, color, levels, skin, blur, inputs.source, source, picture);
  if (const auto* s = settings.scratchboardOutlines; Visible(s))
    picture = ScratchboardOutlines(*s, color, source, picture);
  if (const auto* s = settings.stipplePattern; Visible(s)) picture = StipplePattern(*s, color, levels, source, picture);
  Report(9);
}

}  // namespace quentara
