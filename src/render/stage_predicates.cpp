#include "render/stage_predicates.h"

namespace quentara {
namespace {

template <class StageSettings>
bool Tints(const StageSettings* stage) {
  return Visible(stage) && stage->tintForeground;
}

bool ShadowFamilyVisible(const RenderSettings& settings) {
  return Visible(settings.shadowOutlines) || Visible(settings.woodcutOutlines) ||
         Visible(settings.scratchboardOutlines);
}

}  // namespace

bool Tinted(const RenderSettings& settings) {
  return Tints(settings.shadowOutlines) || Tints(settings.woodcutOutlines) || Tints(settings.scratchboardOutlines);
}

bool Lit(const RenderSettings& settings) {
  return settings.useMainBlur && ShadowFamilyVisible(settings);
}

bool Detail(const RenderSettings& settings) {
  return settings.style == Style::PosterPaint || FlatDetailedRuns(settings);
}

bool FlatDetailedRuns(const RenderSettings& settings) {
  return settings.style == Style::FlatDetailed && settings.flatDetailed->strength > 0.0f;
}

bool NeedsSkinPoints(const RenderSettings& settings) {
  return FlatDetailedRuns(settings) || Visible(settings.comicOutlines) || NeedsToneLevels(settings);
}

bool NeedsToneLevels(const RenderSettings& settings) {
  return Visible(settings.shadowOutlines) || Visible(settings.woodcutOutlines) || Visible(settings.stipplePattern);
}

const BlurSettings* OutlineBlurOf(const RenderSettings& settings) {
  return settings.useMainBlur && settings.mainBlur != nullptr ? settings.mainBlur : settings.outlineBlur;
}

OutlineView OutlineViewOf(const RenderSettings& settings) {
  if (ShadowFamilyVisible(settings)) return OutlineView::Color;
  const bool luma = Visible(settings.softOutlines) || Visible(settings.conteOutlines) ||
                    Visible(settings.stipplePattern) ||
                    (Visible(settings.markerOutlines) && !settings.markerOutlines->reuseCrackle);
  return luma ? OutlineView::Luma : OutlineView::None;
}

bool ReusesCrackle(const RenderSettings& settings) {
  return settings.style == Style::Crackle && Visible(settings.markerOutlines) &&
         settings.markerOutlines->reuseCrackle && !Tinted(settings);
}

}  // namespace quentara
