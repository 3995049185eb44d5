#include "print/lighter_value.h"

#include "imageops/hsv.h"

namespace quentara {

ChannelSet LighterValue(float lighter, const ChannelSet& picture) {
  ValueMap map;
  for (std::size_t i = 0; i < map.size(); ++i) {
    const float value = static_cast<float>(i);
    const float darkness = 1.0f - value / 255.0f;
    const float raised = value * darkness + 255.0f * (1.0f - darkness);
    map[i] = raised * lighter + value * (1.0f - lighter);
  }
  return MapValue(picture, map);
}

}  // namespace quentara
