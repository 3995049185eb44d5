#include "imageops/luma_chroma.h"

#include <algorithm>
#include <cassert>

#include "render/bands.h"

namespace quentara {
namespace {

constexpr float kRed = 0.2126f, kGreen = 0.7152f, kBlue = 0.0722f;
constexpr float kBlueSpan = 2.0f - 2.0f * kBlue, kRedSpan = 2.0f - 2.0f * kRed;

/// Where a run of pixels starts.
struct Pixels {
  const unsigned char* red;
  const unsigned char* green;
  const unsigned char* blue;
};

float Luma(float red, float green, float blue) {
  return kRed * red + kGreen * green + kBlue * blue;
}

void LumaRun(const Pixels& from, float* __restrict luma, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    luma[i] = Luma(from.red[i] / 255.0f, from.green[i] / 255.0f, from.blue[i] / 255.0f) * 255.0f + 0.5f;
}

unsigned char StoredChannel(float channel) {
  return ToByte(std::clamp(channel * 255.0f, 0.0f, 255.0f));
}

template <class T>
void WithLumaRun(const Pixels& from, const T* luma, unsigned char* __restrict red, unsigned char* __restrict green,
                 unsigned char* __restrict blue, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float oldRed = from.red[i] / 255.0f, oldBlue = from.blue[i] / 255.0f;
    const float old = Luma(oldRed, from.green[i] / 255.0f, oldBlue);
    const float blueDifference = (oldBlue - old) / kBlueSpan, redDifference = (oldRed - old) / kRedSpan;
    const float y = luma[i] / 255.0f;
    const float r = y + redDifference * kRedSpan;
    const float b = y + blueDifference * kBlueSpan;
    red[i] = StoredChannel(r);
    green[i] = StoredChannel((y - kRed * r - kBlue * b) / kGreen);
    blue[i] = StoredChannel(b);
  }
}

Pixels RunOf(const ChannelSet& picture, std::ptrdiff_t first) {
  return {picture.planes(0).data() + first, picture.planes(1).data() + first, picture.planes(2).data() + first};
}

template <class T>
ChannelSet WithLuma(const ChannelSet& picture, const Plane<T>& luma) {
  assert(picture.HasMode("RGB") && SameSize(picture.planes(0), luma));
  ChannelSet result("RGB", picture.width(), picture.height());
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    WithLumaRun(RunOf(picture, first), luma.data() + first, result.planes(0).data() + first,
                result.planes(1).data() + first, result.planes(2).data() + first, count);
  });
  return result;
}

}  // namespace

FloatPlane FloatLuma709(const ChannelSet& picture) {
  assert(picture.HasMode("RGB"));
  const BytePlane& red = picture.planes(0);
  FloatPlane luma(red.rows(), red.cols());
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    LumaRun(RunOf(picture, first), luma.data() + first, count);
  });
  return luma;
}

ChannelSet WithLuma709(const ChannelSet& picture, const FloatPlane& luma) {
  return WithLuma(picture, luma);
}

ChannelSet WithLuma709(const ChannelSet& picture, const BytePlane& luma) {
  return WithLuma(picture, luma);
}

}  // namespace quentara
