#include "paint/detail_mask.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "imageops/banded_filters.h"
#include "imageops/float_memo.h"
#include "imageops/sample_range.h"
#include "render/bands.h"

namespace quentara {
namespace {

float SteepCurve(float deviation, float exponent) {
  const auto power = static_cast<float>(std::pow(static_cast<double>(deviation), static_cast<double>(exponent)));
  const auto tangent = static_cast<float>(std::tanh(static_cast<double>(50.0f * power - 25.0f)));
  return 255.0f * (tangent + 1.0f) / 2.0f;
}

}  // namespace

BytePlane DetailMask(const BytePlane& plane, float foreground) {
  assert(plane.numElements() > 0 && foreground >= 0.0f && foreground <= 1.0f);
  const FloatPlane deviations(MedianDeviationInBands(1, plane, MedianInBands(1, plane)));
  const SampleRange range = RangeOf(deviations);
  const float least = range.least, largest = std::max(range.largest, 0.000001f), exponent = 1.0f - foreground;
  BytePlane mask(plane.rows(), plane.cols());
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    auto shade = MakeFloatMemo<unsigned char>(
        [=](float deviation) { return ToByte(SteepCurve((deviation - least) / largest, exponent)); });
    const float* const samples = deviations.data() + first;
    std::transform(samples, samples + count, mask.data() + first, [&](float deviation) { return shade(deviation); });
  });
  return mask;
}

}  // namespace quentara
