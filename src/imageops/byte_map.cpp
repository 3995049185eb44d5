#include "imageops/byte_map.h"

#include <cassert>
#include <cmath>

#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"

namespace quentara {
namespace {

void MapRun(const ByteMap& map, const unsigned char* samples, unsigned char* mapped, std::ptrdiff_t count) {
  ActiveKernels().pixel.mapBytes(map.data(), samples, mapped, count);
}

}  // namespace

ByteMap PowerMap(double exponent) {
  assert(exponent >= 0.0);
  const double white = std::pow(255.0, exponent);
  const bool tooLarge = std::isinf(255.0 * white);
  return MakeByteMap([&](int sample) {
    const double value = tooLarge ? 255.0 * std::pow(sample / 255.0, exponent)
                                  : 255.0 * std::pow(static_cast<double>(sample), exponent) / white;
    return static_cast<unsigned char>(std::floor(value + 0.5));
  });
}

ByteMap SinglePowerMap(float exponent) {
  assert(exponent >= 0.0f && exponent <= 15.0f);
  const auto power = [&](double base) { return static_cast<float>(std::pow(base, static_cast<double>(exponent))); };
  const float white = power(255.0);
  return MakeByteMap([&](int sample) { return ToByte(255.0f * power(sample) / white); });
}

ByteMap NegativeMap() {
  return MakeByteMap([](int sample) { return static_cast<unsigned char>(255 - sample); });
}

BytePlane MapBytes(const ByteMap& map, const BytePlane& plane) {
  BytePlane mapped(plane.rows(), plane.cols());
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    MapRun(map, plane.data() + first, mapped.data() + first, count);
  });
  return mapped;
}

ChannelSet MapBytes(const ByteMap& map, const ChannelSet& picture) {
  ChannelSet mapped(picture.mode(), picture.width(), picture.height());
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (int i = 0; i < static_cast<int>(picture.channelCount()); ++i)
      MapRun(map, picture.planes(i).data() + first, mapped.planes(i).data() + first, count);
  });
  return mapped;
}

void MapBytesOf(ChannelSet& picture, const ByteMap& map) {
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (int i = 0; i < static_cast<int>(picture.channelCount()); ++i) {
      unsigned char* const samples = picture.planes(i).data() + first;
      MapRun(map, samples, samples, count);
    }
  });
}

}  // namespace quentara
