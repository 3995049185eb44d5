#include "paint/droplet.h"

#include <cassert>

#include "imageops/banded_filters.h"
#include "imageops/box_mean_filter.h"
#include "imageops/luma.h"
#include "paint/luma_strength.h"
#include "render/bands.h"

namespace quentara {
namespace {

// 0.5 * mean + 0.5 * plane, rounded half up, which is exact in whole numbers.
BytePlane SoftenHalf(const BytePlane& plane) {
  BytePlane soft(BoxMeanFilter(1, plane));
  for (std::ptrdiff_t i = 0, count = plane.numElements(); i < count; ++i)
    soft.data()[i] = static_cast<unsigned char>((soft.data()[i] + plane.data()[i] + 1) / 2);
  return soft;
}

}  // namespace

ChannelSet DropletStyle(int radius, float strength, int passes, const ChannelSet& picture) {
  assert(radius >= 1 && passes >= 0);
  Plugin::CheckStop();
  const BytePlane luma(LumaPlane709(picture));
  BytePlane drops(luma);  // until a pass replaces it
  for (int pass = 0; pass < passes; ++pass) {
    drops.reference(ModeInBands(radius, drops));
    Plugin::CheckStop();
  }
  drops.reference(MedianInBands(radius, drops));
  Plugin::CheckStop();
  return ReplaceLuma(picture, luma, FilterInBands(1, SoftenHalf, AtStrength(strength, luma, drops)));
}

}  // namespace quentara
