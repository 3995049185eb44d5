#include "imageops/luma_chroma.h"

#include <algorithm>
#include <cassert>

#include "render/bands.h"

namespace quentara {
namespace {

constexpr float kRed = 0.2126f, kGreen = 0.7152f, kBlue = 0.0722f;
constexpr float kBlueSpan = 2.0f - 2.0f * kBlue, kRedSpan = 2.0f - 2.0f * kRed;

void ToLumaChromaRun(const unsigned char* red, const unsigned char* green, const unsigned char* blue,
                     float* __restrict luma, float* __restrict blueDifference, float* __restrict redDifference,
                     std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float r = red[i] / 255.0f, g = green[i] / 255.0f, b = blue[i] / 255.0f;
    const float y = kRed * r + kGreen * g + kBlue * b;
    luma[i] = y * 255.0f + 0.5f;
    blueDifference[i] = (b - y) / kBlueSpan;
    redDifference[i] = (r - y) / kRedSpan;
  }
}

unsigned char StoredChannel(float channel) {
  return ToByte(std::clamp(channel * 255.0f, 0.0f, 255.0f));
}

void FromLumaChromaRun(const float* luma, const float* blueDifference, const float* redDifference,
                       unsigned char* __restrict red, unsigned char* __restrict green, unsigned char* __restrict blue,
                       std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float y = luma[i] / 255.0f;
    const float r = y + redDifference[i] * kRedSpan;
    const float b = y + blueDifference[i] * kBlueSpan;
    red[i] = StoredChannel(r);
    green[i] = StoredChannel((y - kRed * r - kBlue * b) / kGreen);
    blue[i] = StoredChannel(b);
  }
}

}  // namespace

FloatChannelSet RgbToLumaChroma(const ChannelSet& picture) {
  assert(picture.HasMode("RGB"));
  FloatChannelSet box("HSV", picture.width(), picture.height());
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    ToLumaChromaRun(picture.planes(0).data() + first, picture.planes(1).data() + first,
                    picture.planes(2).data() + first, box.planes(0).data() + first, box.planes(1).data() + first,
                    box.planes(2).data() + first, count);
  });
  return box;
}

ChannelSet LumaChromaToRgb(const FloatPlane& luma, const FloatPlane& blueDifference, const FloatPlane& redDifference) {
  assert(SameSize(luma, blueDifference) && SameSize(luma, redDifference));
  ChannelSet picture("RGB", static_cast<std::uint32_t>(luma.cols()), static_cast<std::uint32_t>(luma.rows()));
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    FromLumaChromaRun(luma.data() + first, blueDifference.data() + first, redDifference.data() + first,
                      picture.planes(0).data() + first, picture.planes(1).data() + first,
                      picture.planes(2).data() + first, count);
  });
  return picture;
}

}  // namespace quentara
