#include "imageops/hsv.h"

#include <algorithm>
#include <cassert>

#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"

namespace quentara {
namespace {

void ToHsvFrom(const ChannelSet& picture, std::ptrdiff_t first, float* hue, float* saturation, float* value,
               std::ptrdiff_t count) {
  ActiveKernels().pixel.toHsv(picture.planes(0).data() + first, picture.planes(1).data() + first,
                              picture.planes(2).data() + first, hue, saturation, value, count);
}

void FromHsvTo(ChannelSet& picture, std::ptrdiff_t first, const float* hue, const float* saturation, const float* value,
               std::ptrdiff_t count) {
  ActiveKernels().pixel.fromHsv(hue, saturation, value, picture.planes(0).data() + first,
                                picture.planes(1).data() + first, picture.planes(2).data() + first, count);
}

// The picture with the values that newValues(first, count, values) puts in the place of the old ones. The three floats
// of a pixel live only in the nearest cache.
template <class NewValues>
ChannelSet WithValues(const ChannelSet& picture, const NewValues& newValues) {
  assert(picture.HasMode("RGB"));
  ChannelSet result("RGB", picture.width(), picture.height());
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t bandFirst, std::ptrdiff_t bandCount) {
    constexpr std::ptrdiff_t kRun = 256;
    float hue[kRun], saturation[kRun], value[kRun];
    for (std::ptrdiff_t first = bandFirst, end = bandFirst + bandCount; first < end; first += kRun) {
      const std::ptrdiff_t count = std::min(kRun, end - first);
      ToHsvFrom(picture, first, hue, saturation, value, count);
      newValues(first, count, value);
      FromHsvTo(result, first, hue, saturation, value, count);
    }
  });
  return result;
}

template <class T>
ChannelSet WithValuePlane(const ChannelSet& picture, const Plane<T>& value) {
  assert(SameSize(picture.planes(0), value));
  return WithValues(picture, [&](std::ptrdiff_t first, std::ptrdiff_t count, float* values) {
    std::copy_n(value.data() + first, count, values);
  });
}

}  // namespace

FloatChannelSet RgbToHsv(const ChannelSet& picture) {
  assert(picture.HasMode("RGB"));
  FloatChannelSet hsv("HSV", picture.width(), picture.height());
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    ToHsvFrom(picture, first, hsv.planes(0).data() + first, hsv.planes(1).data() + first, hsv.planes(2).data() + first,
              count);
  });
  return hsv;
}

ChannelSet HsvToRgb(const FloatChannelSet& hue, const FloatChannelSet& saturation, const FloatChannelSet& value) {
  assert(SameSize(hue.planes(0), saturation.planes(0)) && SameSize(hue.planes(0), value.planes(0)));
  ChannelSet picture("RGB", hue.width(), hue.height());
  ForSampleBands(hue.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    FromHsvTo(picture, first, hue.planes(0).data() + first, saturation.planes(0).data() + first,
              value.planes(0).data() + first, count);
  });
  return picture;
}

ChannelSet ReplaceValue(const ChannelSet& picture, const BytePlane& value) {
  return WithValuePlane(picture, value);
}

ChannelSet ReplaceValue(const ChannelSet& picture, const FloatPlane& value) {
  return WithValuePlane(picture, value);
}

ChannelSet MapValue(const ChannelSet& picture, const ValueMap& map) {
  return WithValues(picture, [&](std::ptrdiff_t, std::ptrdiff_t count, float* values) {
    std::transform(values, values + count, values, [&](float value) { return map[static_cast<std::size_t>(value)]; });
  });
}

}  // namespace quentara
