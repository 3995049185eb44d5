#include "outlines/conte_outlines.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "imageops/luma.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

ChannelSet MergedByDefinition(const ChannelSet& dark, const ChannelSet& light, const ChannelSet& picture) {
  const BytePlane ld(LumaPlane601(dark)), ll(LumaPlane601(light)), lp(LumaPlane601(picture));
  ChannelSet merged = dark;
  for (int i = 0; i < 3; ++i)
    for (int p = 0; p < static_cast<int>(picture.pixelCount()); ++p) {
      const int darkMove = std::abs(ld.data()[p] - lp.data()[p]), lightMove = std::abs(ll.data()[p] - lp.data()[p]);
      const unsigned char d = dark.planes(i).data()[p], l = light.planes(i).data()[p];
      if (darkMove == 0 && lightMove != 0) merged.planes(i).data()[p] = l;
      if (darkMove == 0 || lightMove == 0) continue;
      const float w = static_cast<float>(darkMove) / static_cast<float>(darkMove + lightMove);
      merged.planes(i).data()[p] = ToByte(w * static_cast<float>(d) + (1.0f - w) * static_cast<float>(l));
    }
  return merged;
}

// Drawings that leave about a third of the pixels of a picture alone.
ChannelSet DrawnOver(const ChannelSet& picture, std::mt19937& rng) {
  ChannelSet drawn = RandomPicture(static_cast<int>(picture.height()), static_cast<int>(picture.width()), rng);
  for (std::uint32_t p = 0; p < picture.pixelCount(); ++p)
    if (rng() % 3 == 0)
      for (int i = 0; i < 3; ++i) drawn.planes(i).data()[p] = picture.planes(i).data()[p];
  return drawn;
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

TEST(CrayonMerge, WeighsByLumaAlone) {
  const auto merge = [](std::array<int, 3> dark, std::array<int, 3> light, std::array<int, 3> picture) {
    const auto pixel = [](const std::array<int, 3>& values) {
      ChannelSet set("RGB", 1, 1);
      for (int i = 0; i < 3; ++i) set.planes(i)(0, 0) = static_cast<unsigned char>(values[static_cast<std::size_t>(i)]);
      return set;
    };
    ChannelSet merged = pixel(dark);
    CrayonMerge(merged, pixel(light), pixel(picture));
    return std::array<int, 3>{merged.planes(0)(0, 0), merged.planes(1)(0, 0), merged.planes(2)(0, 0)};
  };
  const std::array<int, 3> grey = {100, 100, 100};
  EXPECT_EQ((std::array{100, 101, 103}), merge({60, 60, 60}, {140, 141, 145}, grey));  // moved by 40 and by 41
  // The dark crayon changed the colour, but not the luma: only the light one counts.
  EXPECT_EQ((std::array{150, 150, 150}), merge({119, 90, 100}, {150, 150, 150}, grey));
  EXPECT_EQ((std::array{119, 90, 100}), merge({119, 90, 100}, grey, grey));
}

}  // namespace
}  // namespace quentara
