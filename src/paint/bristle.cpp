#include "paint/bristle.h"

#include <algorithm>

#include "imageops/luma_chroma.h"
#include "paint/deviation_paint.h"
#include "paint/sharpen.h"
#include "render/bands.h"

namespace quentara {
namespace {

void LimitRun(const float* luma, const float* sharpened, unsigned char* __restrict limited, std::ptrdiff_t count) {
  constexpr float kLimit = kOutlierLimit;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float sharp = std::clamp(sharpened[i], 0.0f, 255.0f);
    const bool outlier = sharp > luma[i] + kLimit || luma[i] - kLimit > sharp;
    limited[i] = ToByte(outlier ? luma[i] : sharp);
  }
}

BytePlane SharpLuma(float gain, const FloatPlane& luma) {
  const FloatPlane sharpened(Sharpen3x3(gain, luma));
  BytePlane limited(luma.rows(), luma.cols());
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    LimitRun(luma.data() + first, sharpened.data() + first, limited.data() + first, count);
  });
  return limited;
}

}  // namespace

ChannelSet BristleStyle(float presharpen, int spread, float postsharpen, int quality, const ChannelSet& picture) {
  Plugin::CheckStop();
  const BytePlane sharp(SharpLuma(presharpen, FloatLuma709(picture)));
  return WithLuma709(picture, DeviationPaint(sharp, spread, postsharpen, quality));
}

}  // namespace quentara
