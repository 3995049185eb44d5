#include "render/lighter_step.h"

#include <utility>

#include "imageops/lighter_tone.h"
#include "print/lighter_value.h"
#include "render/stage_predicates.h"

namespace quentara {
namespace {

void MixWithTone(float gamma, float weight, ChannelSet& picture) {
  ChannelSet tone = LighterTone(gamma, picture);
  MixImages(picture, tone, weight);
  picture = std::move(tone);
}

void ApplyLighter1(float lighter, ChannelSet& picture) {
  constexpr float kFullTone = 2.0f / 3.0f;
  if (lighter < kFullTone)
    MixWithTone(1.5f, lighter / kFullTone, picture);
  else if (lighter == kFullTone)
    picture = LighterTone(1.5f, picture);
  else
    picture = LighterTone(2.0f - (0.5f + (lighter - kFullTone) / kFullTone), picture);
}

}  // namespace

void ApplyLighter(const RenderSettings& settings, ChannelSet& picture) {
  if (!(settings.lighter > 0.0f) || Tinted(settings) || FlatDetailedRuns(settings)) return;
  if (settings.lighterSecond)
    picture = LighterValue(settings.lighter, picture);
  else
    ApplyLighter1(settings.lighter, picture);
}

ChannelSet DetailedTone(float lighter, const ChannelSet& picture) {
  if (lighter > 0.5f) return LighterTone(2.0f - lighter, picture);
  ChannelSet tone = LighterTone(1.5f, picture);
  if (lighter < 0.5f) MixImages(picture, tone, lighter + 0.5f);
  return tone;
}

}  // namespace quentara
