#include "paint/flat_shaded.h"

#include <cassert>

#include "imageops/banded_filters.h"
#include "imageops/luma.h"
#include "paint/luma_strength.h"
#include "render/bands.h"

namespace quentara {
namespace {

constexpr int kPasses = 8;

}  // namespace

ChannelSet FlatShaded(const FlatShadedSettings& settings, const ChannelSet& image) {
  assert(settings.flatness >= 0 && settings.simplicity >= 0);
  const BytePlane luma(LumaPlane709(image));
  BytePlane flat(luma);  // until a pass replaces it
  RangePass pass{0, settings.quality == kHigh, settings.flatness, settings.simplicity,
                 BandCount(luma.rows(), settings.flatness + kPasses - 1)};
  for (; pass.index < kPasses; ++pass.index, ++pass.radius, ++pass.limit) {
    flat.reference(RangeMedianPass(pass, luma, flat));
    Plugin::CheckStop();
  }
  return ReplaceLuma(image, luma, AtStrength(settings.strength, luma, flat));
}

}  // namespace quentara
