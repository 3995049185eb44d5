#include "imageops/lighter_tone.h"

#include <cassert>
#include <cmath>

#include "imageops/byte_map.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/skin_tones.h"
#include "render/plugin_host.h"

namespace quentara {
namespace {

ByteMap GammaMap(float gamma) {
  return Plugin::ThreadCount() > 1 ? PowerMap(gamma) : SinglePowerMap(gamma);
}

// From 0 to `white`, spread to the full range; a negative white makes black white, too.
ValueMap StretchTo(float white) {
  ValueMap map;
  for (std::size_t i = 0; i < map.size(); ++i) {
    const float value = static_cast<float>(i);
    map[i] = value > white ? 255.0f : ToByte(value * 255.0f / white);
  }
  return map;
}

}  // namespace

ChannelSet LighterTone(float gamma, const ChannelSet& picture) {
  assert(picture.HasMode("RGB") && gamma >= 1.0f);
  ChannelSet bent = picture;
  MapBytesOf(bent, GammaMap(gamma));
  const PointList skin = SkinPointList(bent.planes(0), bent.planes(1), bent.planes(2));
  const Tones tones = ToneLevels(skin, BrightestPlane(bent));
  const float white = std::floor(tones.median - tones.spread) + 0.5f;
  ChannelSet result = MapValue(bent, StretchTo(white));
  MapBytesOf(result, GammaMap(1.0f / gamma));
  return result;
}

}  // namespace quentara
