#include "paint/luma_strength.h"

#include <algorithm>
#include <cassert>

#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

void MixRun(float strength, const Byte* luma, const Byte* painted, Byte* __restrict result, std::ptrdiff_t count) {
  const float rest = 1.0f - strength;
  for (std::ptrdiff_t i = 0; i < count; ++i) result[i] = ToByte(strength * painted[i] + rest * luma[i]);
}

void ExaggerateRun(float strength, const Byte* luma, const Byte* painted, Byte* __restrict result,
                   std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float moved = luma[i] + strength * static_cast<float>(painted[i] - luma[i]);
    result[i] = ToByte(std::clamp(moved, 0.0f, 255.0f));
  }
}

}  // namespace

BytePlane AtStrength(float strength, const BytePlane& luma, const BytePlane& painted) {
  assert(strength >= 0.0f && SameSize(luma, painted));
  if (strength == 1.0f) return painted;
  BytePlane result(luma.rows(), luma.cols());
  const auto run = strength < 1.0f ? MixRun : ExaggerateRun;
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    run(strength, luma.data() + first, painted.data() + first, result.data() + first, count);
  });
  return result;
}

}  // namespace quentara
