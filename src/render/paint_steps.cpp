#include "render/paint_steps.h"

#include "outlines/compositing.h"
#include "paint/airbrush.h"
#include "paint/bristle.h"
#include "paint/crackle.h"
#include "paint/droplet.h"
#include "paint/flat_detailed.h"
#include "paint/flat_shaded.h"
#include "paint/gouache.h"
#include "paint/poster_paint.h"
#include "render/lighter_step.h"
#include "render/progress.h"
#include "render/stage_predicates.h"

namespace quentara {
namespace {

constexpr int kDropletPasses = 4;

ChannelSet Paint(const AirbrushSettings& s, const ChannelSet& picture) {
  return AirbrushStyle(s.spread, s.lightMix * 5.0f - 2.0f, -s.strength, picture);
}

ChannelSet Paint(const BristleSettings& s, const ChannelSet& picture) {
  return BristleStyle(s.presharpen * 10.0f + 1.0f, s.spread, s.postsharpen + 1.0f, s.quality, picture);
}

ChannelSet Paint(const CrackleSettings& s, const ChannelSet& picture) {
  return CrackleStyle(FirstCrackleRadius(s.flatness, s.separation), s.simplicity, s.separation, s.strength, picture);
}

ChannelSet Paint(const DropletSettings& s, const ChannelSet& picture) {
  return DropletStyle(s.radius, s.strength, kDropletPasses, picture);
}

ChannelSet Paint(const GouacheSettings& s, const ChannelSet& picture) {
  return GouacheStyle(s.preblur + 2, s.presharpen + 1.0f, s.spread, s.postsharpen + 1.0f, s.quality, picture);
}

ChannelSet Paint(const PosterPaintSettings& s, const ChannelSet& picture) {
  return PosterPaintStyle(s.paint1, s.paint2, s.blend, s.foreground, s.radius, s.contrast, picture);
}

ChannelSet PaintFlatDetailed(const RenderSettings& settings, const PointList& skinPoints, const ChannelSet& picture) {
  const FlatDetailedSettings& s = *settings.flatDetailed;
  const ChannelSet tone = DetailedTone(settings.lighter, picture);
  Report(3);
  const ChannelSet flat = FlatDetailed(skinPoints, s.level * 4.0f - 2.5f, s.temporalFix, picture);
  return DarkenByMask(tone, flat, s.strength / 2.0f);
}

}  // namespace

ChannelSet PaintInStyle(const RenderSettings& settings, const PointList& skinPoints, const ChannelSet& picture) {
  if (settings.flatShaded != nullptr) return FlatShaded(*settings.flatShaded, picture);
  if (FlatDetailedRuns(settings)) return PaintFlatDetailed(settings, skinPoints, picture);
  if (settings.airbrush != nullptr) return Paint(*settings.airbrush, picture);
  if (settings.bristle != nullptr) return Paint(*settings.bristle, picture);
  if (settings.crackle != nullptr) return Paint(*settings.crackle, picture);
  if (settings.droplet != nullptr) return Paint(*settings.droplet, picture);
  if (settings.gouache != nullptr) return Paint(*settings.gouache, picture);
  if (settings.posterPaint != nullptr) return Paint(*settings.posterPaint, picture);
  return picture.Share();
}

}  // namespace quentara
