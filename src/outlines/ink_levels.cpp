#include "outlines/ink_levels.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "blur/blur_image.h"
#include "imageops/byte_map.h"
#include "imageops/luma.h"
#include "outlines/compositing.h"

namespace quentara {
namespace {

float Log(float value) {
  return static_cast<float>(std::log(static_cast<double>(value)));
}

}  // namespace

Ink InkLevels(float sensitivity, float strength) {
  const float t = 1.0f - sensitivity;
  const float level = t <= 0.5f ? t * 340.0f : (t - 0.5f) * 170.0f + 170.0f;
  const float exponent = static_cast<float>(std::pow(10.0, static_cast<double>(strength * 2.0f)));
  return {level == 255.0f ? 254.0f : level, exponent};
}

ChannelSet ToneToLevel(float level, const PointList& skinPoints, const ChannelSet& image) {
  assert(image.HasMode("RGB"));
  const float median = MedianTone(skinPoints, LumaPlane601(image));
  if (median == 255.0f) return image;
  const float exponent = Log(std::max(level, 1e-8f) / 255.0f) / (Log(median) - Log(255.0f));
  return MapBytes(PowerMap(static_cast<double>(exponent)), image);
}

ChannelSet InkTones(float level, const PointList& skinPoints, const BlurSettings* blur, const ChannelSet& source) {
  ChannelSet tones = ToneToLevel(level, skinPoints, source);
  return blur == nullptr ? tones : BlurImage(*blur, LumaMode, tones);
}

ChannelSet InkThreshold(const Ink& ink, const ChannelSet& lines) {
  const float cut = std::floor(ink.level) + 0.5f;
  const ByteMap darkened = PowerMap(static_cast<double>(ink.exponent));
  const ByteMap inked = MakeByteMap([&](int sample) {
    const unsigned char shade = ToByte(SoftLightSelf(darkened[static_cast<std::size_t>(sample)]));
    return static_cast<unsigned char>(shade > cut ? 255 : 0);
  });
  ChannelSet mask("L", lines.width(), lines.height(), lines.planes(0));
  MapBytesOf(mask, inked);
  return mask;
}

}  // namespace quentara
