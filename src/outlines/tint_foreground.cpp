#include "outlines/tint_foreground.h"

#include "imageops/hsv.h"

namespace quentara {

ChannelSet TintForeground(const ChannelSet& picture) {
  ValueMap map;
  map.fill(255.0f);
  return MapValue(picture, map);
}

}  // namespace quentara
