#include "blur/supersmart_blur.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "imageops/banded_filters.h"
#include "imageops/sample_range.h"
#include "render/bands.h"

namespace quentara {
namespace {

struct WeightCurve {
  float least, largest, exponent;

  float operator()(float deviation) const {
    const float share = (deviation - least) / largest;
    return static_cast<float>(std::pow(static_cast<double>(share), static_cast<double>(exponent)));
  }
};

// Remembers the weights of recent deviations: a deviation is a whole number over the size of the window, so few
// different ones make up a picture, and a power costs far more than a look into a table that stays in cache.
class WeightMemo {
 public:
  explicit WeightMemo(const WeightCurve& curve) : curve_(curve), entries_(kSize, Entry{-1.0f, 0.0f}) {}

  float operator()(float deviation) {
    std::uint32_t bits;
    std::memcpy(&bits, &deviation, sizeof bits);
    Entry& entry = entries_[(bits * 2654435761u) >> (32 - kBits)];  // the multiplier of Knuth's hash
    if (entry.deviation != deviation) entry = {deviation, curve_(deviation)};
    return entry.weight;
  }

 private:
  static constexpr int kBits = 13;
  static constexpr std::size_t kSize = std::size_t{1} << kBits;
  struct Entry {
    float deviation, weight;  // no deviation is negative
  };
  const WeightCurve curve_;
  std::vector<Entry> entries_;
};

void DeviationsToWeights(float blurring, FloatPlane& deviations) {
  const SampleRange range = RangeOf(deviations);
  const WeightCurve curve{range.least, std::max(range.largest, 0.000001f), blurring};
  ForSampleBands(deviations, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    WeightMemo memo(curve);
    float* const samples = deviations.data() + first;
    std::transform(samples, samples + count, samples, [&](float deviation) { return memo(deviation); });
  });
}

// Takes the medians over into the result.
void MixRun(const unsigned char* plane, const float* weights, unsigned char* __restrict medians, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    medians[i] = ToByte(plane[i] * weights[i] + medians[i] * (1.0f - weights[i]));
}

}  // namespace

ChannelSet SupersmartBlur(float blurring, int testRadius, int blurRadius, const ChannelSet& image) {
  assert(testRadius >= 1 && blurRadius >= 1);
  Plugin::CheckStop();
  ChannelSet blurred = image;
  if (blurring <= 0.0f || image.pixelCount() == 0) return blurred;
  const int channels = static_cast<int>(image.channelCount());
  for (int i = 0; i < channels; ++i) blurred.planes(i).reference(MedianInBands(testRadius, image.planes(i)));
  Plugin::CheckStop();
  std::vector<FloatPlane> weights;
  for (int i = 0; i < channels; ++i)
    weights.push_back(MedianDeviationInBands(testRadius, image.planes(i), blurred.planes(i)));
  Plugin::CheckStop();
  for (FloatPlane& plane : weights) DeviationsToWeights(blurring, plane);
  Plugin::CheckStop();
  for (int i = 0; i < channels; ++i) {
    const BytePlane& plane = image.planes(i);
    BytePlane& medians = blurred.planes(i);
    if (blurRadius != testRadius) medians.reference(MedianInBands(blurRadius, plane));
    const FloatPlane& weight = weights[static_cast<std::size_t>(i)];
    ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
      MixRun(plane.data() + first, weight.data() + first, medians.data() + first, count);
    });
  }
  return blurred;
}

}  // namespace quentara
