#include "imageops/hsv.h"

#include <algorithm>
#include <cassert>

#include "render/bands.h"

namespace quentara {
namespace {

// The third of the circle is chosen before the division, so that the loop has no branch and one quotient for the hue.
void ToHsvRun(const unsigned char* red, const unsigned char* green, const unsigned char* blue, float* __restrict hue,
              float* __restrict saturation, float* __restrict value, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float r = red[i], g = green[i], b = blue[i];
    const float most = std::max(std::max(r, g), b), least = std::min(std::min(r, g), b);
    const bool grey = most == least;
    const float delta = grey ? 1.0f : (most - least) / 255.0f;
    const float third = r == most ? 0.0f : g == most ? 2.0f : 4.0f;
    const float lead = r == most ? g - b : g == most ? b - r : r - g;
    const float degrees = (third + lead / 255.0f / delta) * 60.0f;
    hue[i] = grey ? 0.0f : degrees < 0.0f ? degrees + 360.0f : degrees;
    saturation[i] = grey ? 0.0f : (most - least) / most;
    value[i] = most;
  }
}

// All ones where `holds`: choices between whole numbers by masks run in vector lanes, nested ones between floats do
// not.
int Mask(bool holds) {
  return -static_cast<int>(holds);
}

// In each sextant one channel is the largest, one the least, and the middle one rises (even sextants) or falls (odd).
// Without saturation all three are the value itself, as the factor of the saturation is then 1.
void FromHsvRun(const float* hue, const float* saturation, const float* value, unsigned char* __restrict red,
                unsigned char* __restrict green, unsigned char* __restrict blue, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float s = saturation[i], v = value[i];
    const float sixths = (hue[i] == 360.0f ? 0.0f : hue[i]) / 60.0f;
    const int sextant = static_cast<int>(sixths);
    const float f = sixths - static_cast<float>(sextant);
    const float share = sextant % 2 == 0 ? 1.0f - f : f;
    const int largest = ToByte(v), least = ToByte(v * (1.0f - s)), middle = ToByte(v * (1.0f - s * share));
    const auto choose = [=](int middleFirst, int largestFirst) {
      const int isMiddle = Mask((sextant == middleFirst) | (sextant == (middleFirst + 3) % 6));
      const int isLargest = Mask((sextant == largestFirst) | (sextant == (largestFirst + 1) % 6));
      return static_cast<unsigned char>((middle & isMiddle) | (largest & isLargest) |
                                        (least & ~(isMiddle | isLargest)));
    };
    red[i] = choose(1, 5);
    green[i] = choose(0, 1);
    blue[i] = choose(2, 3);
  }
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
      ToHsvRun(picture.planes(0).data() + first, picture.planes(1).data() + first, picture.planes(2).data() + first,
               hue, saturation, value, count);
      newValues(first, count, value);
      FromHsvRun(hue, saturation, value, result.planes(0).data() + first, result.planes(1).data() + first,
                 result.planes(2).data() + first, count);
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
    ToHsvRun(picture.planes(0).data() + first, picture.planes(1).data() + first, picture.planes(2).data() + first,
             hsv.planes(0).data() + first, hsv.planes(1).data() + first, hsv.planes(2).data() + first, count);
  });
  return hsv;
}

ChannelSet HsvToRgb(const FloatChannelSet& hue, const FloatChannelSet& saturation, const FloatChannelSet& value) {
  assert(SameSize(hue.planes(0), saturation.planes(0)) && SameSize(hue.planes(0), value.planes(0)));
  ChannelSet picture("RGB", hue.width(), hue.height());
  ForSampleBands(hue.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    FromHsvRun(hue.planes(0).data() + first, saturation.planes(0).data() + first, value.planes(0).data() + first,
               picture.planes(0).data() + first, picture.planes(1).data() + first, picture.planes(2).data() + first,
               count);
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
