#include "paint/gouache.h"

#include <algorithm>

#include "imageops/banded_filters.h"
#include "imageops/luma.h"
#include "paint/deviation_paint.h"
#include "render/bands.h"

namespace quentara {
namespace {

void SharpenRun(float gain, const unsigned char* luma, const unsigned char* medians,
                unsigned char* __restrict sharpened, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float median = medians[i], sample = luma[i];
    const float sharp = std::clamp(median + gain * sample - gain * median, 0.0f, 255.0f);
    const bool outlier = sharp > sample + kOutlierLimit || sample - kOutlierLimit > sharp;
    sharpened[i] = ToByte(outlier ? median : sharp);
  }
}

BytePlane SharpenFromMedian(int radius, float gain, const BytePlane& luma) {
  const BytePlane medians(MedianInBands(radius, luma));
  Plugin::CheckStop();
  BytePlane sharpened(luma.rows(), luma.cols());
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    SharpenRun(gain, luma.data() + first, medians.data() + first, sharpened.data() + first, count);
  });
  return sharpened;
}

}  // namespace

ChannelSet GouacheStyle(int preblur, float presharpen, int spread, float postsharpen, int quality,
                        const ChannelSet& picture) {
  Plugin::CheckStop();
  const BytePlane luma(LumaPlane709(picture));
  const BytePlane painted(DeviationPaint(SharpenFromMedian(preblur, presharpen, luma), spread, postsharpen, quality));
  return ReplaceLuma(picture, luma, painted);
}

}  // namespace quentara
