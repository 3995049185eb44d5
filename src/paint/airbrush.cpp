#include "paint/airbrush.h"

#include <algorithm>
#include <cassert>
#include <initializer_list>

#include "imageops/banded_filters.h"
#include "imageops/luma_chroma.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Filter = BytePlane (*)(int radius, const BytePlane& plane);

BytePlane Smooth(int spread, std::initializer_list<Filter> chain, BytePlane plane) {
  for (const Filter filter : chain) {
    plane.reference(filter(spread, plane));
    plane.reference(BoxMeanInBands(spread, plane));
    Plugin::CheckStop();
  }
  return plane;
}

BytePlane SmoothDarkFirst(int spread, const BytePlane& plane) {
  return Smooth(spread, {MaxInBands, MinInBands, MinInBands, MaxInBands}, plane);
}

BytePlane SmoothBrightFirst(int spread, const BytePlane& plane) {
  return Smooth(spread, {MinInBands, MaxInBands, MaxInBands, MinInBands}, plane);
}

BytePlane Truncate(const FloatPlane& plane) {
  BytePlane truncated(plane.rows(), plane.cols());
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    std::transform(plane.data() + first, plane.data() + first + count, truncated.data() + first,
                   [](float sample) { return static_cast<unsigned char>(static_cast<int>(sample)); });
  });
  return truncated;
}

void PushRun(float mix, float push, const unsigned char* a, const unsigned char* b, float* __restrict luma,
             std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float smooth = std::clamp(a[i] + mix * static_cast<float>(b[i] - a[i]), 0.0f, 255.0f);
    luma[i] = std::clamp(luma[i] + push * (smooth - luma[i]), 0.0f, 255.0f);
  }
}

}  // namespace

ChannelSet AirbrushStyle(int spread, float mix, float push, const ChannelSet& picture) {
  assert(spread >= 1);
  FloatPlane luma(FloatLuma709(picture));
  {
    const BytePlane plane(Truncate(luma));
    const BytePlane a(mix == 1.0f ? plane : SmoothDarkFirst(spread, plane));
    const BytePlane b(mix == 0.0f ? a : SmoothBrightFirst(spread, plane));
    ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
      PushRun(mix, push, a.data() + first, b.data() + first, luma.data() + first, count);
    });
  }
  return WithLuma709(picture, luma);
}

}  // namespace quentara
