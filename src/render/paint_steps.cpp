#include "render/paint_steps.h"

#include "paint/airbrush.h"
#include "paint/bristle.h"
#include "paint/crackle.h"
#include "paint/droplet.h"
#include "paint/flat_shaded.h"
#include "paint/gouache.h"

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

}  // namespace

ChannelSet PaintInStyle(const RenderSettings& settings, const ChannelSet& picture) {
  if (settings.flatShaded != nullptr) return FlatShaded(*settings.flatShaded, picture);
  if (settings.airbrush != nullptr) return Paint(*settings.airbrush, picture);
  if (settings.bristle != nullptr) return Paint(*settings.bristle, picture);
  if (settings.crackle != nullptr) return Paint(*settings.crackle, picture);
  if (settings.droplet != nullptr) return Paint(*settings.droplet, picture);
  if (settings.gouache != nullptr) return Paint(*settings.gouache, picture);
  return picture;
}

}  // namespace quentara
