#include "blur/blur_image.h"

#include <cassert>

#include "blur/supersmart_blur.h"
#include "imageops/banded_filters.h"
#include "imageops/luma.h"
#include "render/bands.h"

namespace quentara {
namespace {

int PassCount(const BlurSettings& settings) {
  if (settings.type == BlurType::Box) return 2;
  return settings.quality == kHigh ? 3 : 4;
}

}  // namespace

ChannelSet BlurImage(const BlurSettings& settings, BlurMode mode, const ChannelSet& image) {
  assert(settings.type != BlurType::None);
  if (mode == LumaMode && image.HasMode("RGB")) {
    const ChannelSet luma(LumaImage709(image));
    return ReplaceLuma(image, luma.planes(0), BlurImage(settings, ChannelMode, luma).planes(0));
  }
  if (settings.type == BlurType::Supersmart)
    return SupersmartBlur(settings.blurring, settings.testRadius, settings.blurRadius, image);

  RangePass pass{0, settings.quality == kHigh, settings.radius, settings.thresh,
                 BandCount(static_cast<int>(image.height()), settings.radius)};
  ChannelSet blurred(BlankLike(image, image.height(), image.width()));
  for (; pass.index < PassCount(settings); ++pass.index) {
    for (int i = 0; i < static_cast<int>(image.channelCount()); ++i) {
      const BytePlane& values = pass.index == 0 ? image.planes(i) : blurred.planes(i);
      const BytePlane& centre = settings.type == BlurType::Box ? values : image.planes(i);
      blurred.planes(i).reference(RangeMeanPass(pass, centre, values));
    }
    Plugin::CheckStop();
  }
  return blurred;
}

}  // namespace quentara
