#include "outlines/conte_outlines.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "imageops/luma.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

int MergedByDefinition(int dark, int light, int darkMove, int lightMove) {
  if (darkMove == 0) return lightMove == 0 ? dark : light;
  if (lightMove == 0) return dark;
  const float w = static_cast<float>(darkMove) / static_cast<float>(darkMove + lightMove);
  return ToByte(w * static_cast<float>(dark) + (1.0f - w) * static_cast<float>(light));
}

ChannelSet MergedByDefinition(const ChannelSet& dark, const ChannelSet& light, const ChannelSet& picture) {
  const BytePlane ld(LumaPlane601(dark)), ll(LumaPlane601(light)), lp(LumaPlane601(picture));
  const auto merge = [](int d, int l, int darkLuma, int lightLuma, int luma) {
    return MergedByDefinition(d, l, std::abs(darkLuma - luma), std::abs(lightLuma - luma));
  };
  return Rgb([&](int i) { return EachPixel(merge, dark.planes(i), light.planes(i), ld, ll, lp); });
}

// Drawings that leave about a third of the pixels of a picture alone.
ChannelSet DrawnOver(const ChannelSet& picture, std::mt19937& rng) {
  const BytePlane& red = picture.planes(0);
  const ChannelSet drawing = RandomPicture(red.rows(), red.cols(), rng);
  const BytePlane choice(RandomPlane(red.rows(), red.cols(), rng, 0, 2));
  const auto draw = [](int sample, int drawn, int chosen) { return chosen == 0 ? sample : drawn; };
  return Rgb([&](int i) { return EachPixel(draw, picture.planes(i), drawing.planes(i), choice); });
}

TEST(CrayonMerge, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int seed) {
    std::mt19937 rng(static_cast<unsigned>(seed));
    const ChannelSet dark = DrawnOver(picture, rng), light = DrawnOver(picture, rng);
    ExpectWithAnyWorkers(MergedByDefinition(dark, light, picture), [&] {
      ChannelSet merged = dark;
      CrayonMerge(merged, light, picture);
      return merged;
    });
  });
}

}  // namespace
}  // namespace quentara
