/// What the settings of a frame ask for, as the pipeline's steps need to know it.
#pragma once

#include "render/settings.h"

namespace quentara {

/// A stage with a transparency of exactly 1 would leave the picture as it is, so it is skipped whole.
template <class StageSettings>
bool Visible(const StageSettings* stage) {
  return stage != nullptr && stage->transparency < 1.0f;
}

/// A visible outline tints the foreground: the picture keeps only hue and saturation, so it is not painted.
bool Tinted(const RenderSettings& settings);

/// A visible outline of the shadow family analyses the picture of Main Blur, in colour.
bool Lit(const RenderSettings& settings);

/// The paint style looks at colour edges, not at luma alone.
bool Detail(const RenderSettings& settings);

/// Flat Detailed is chosen and has an effect.
bool FlatDetailedRuns(const RenderSettings& settings);

/// A stage that runs looks at the skin tones of the source.
bool NeedsSkinPoints(const RenderSettings& settings);

/// A stage that runs takes the median and spread of the skin tones of the source.
bool NeedsToneLevels(const RenderSettings& settings);

/// The blur of what the outlines analyse: that of Main Blur with "Use Main Blur", otherwise that of Outline Blur; null
/// when it has no effect.
const BlurSettings* OutlineBlurOf(const RenderSettings& settings);

/// How the outlines look at the picture that Outline Blur makes for them.
enum class OutlineView { None, Luma, Color };
OutlineView OutlineViewOf(const RenderSettings& settings);

/// Marker Outlines takes its lines from the picture that Crackle painted.
bool ReusesCrackle(const RenderSettings& settings);

}  // namespace quentara
