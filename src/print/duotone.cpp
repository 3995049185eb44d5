#include "print/duotone.h"

#include "imageops/byte_map.h"
#include "imageops/luma.h"

namespace quentara {
namespace {

ByteMap Ramp(float darkest, float lightest) {
  const float dark = darkest * 255.0f, light = ToByte(lightest * 255.0f);
  return MakeByteMap([&](int sample) {
    const float share = static_cast<float>(sample) / 255.0f;
    return ToByte(light * share + dark * (1.0f - share));
  });
}

}  // namespace

ChannelSet DuotoneShading(const DuotoneSettings& settings, const ChannelSet& picture) {
  const Color &dark = settings.darkestColor, &light = settings.lightestColor;
  const BytePlane brightness(BrightestPlane(picture));
  const BytePlane red(MapBytes(Ramp(dark.red, light.red), brightness)),
      green(MapBytes(Ramp(dark.green, light.green), brightness)),
      blue(MapBytes(Ramp(dark.blue, light.blue), brightness));
  return ChannelSet("RGB", picture.width(), picture.height(), red, &green, &blue);
}

}  // namespace quentara
