// The styles that gather the luma into patches: Droplet, Crackle and Airbrush.
#include <gtest/gtest.h>

#include "imageops/luma.h"
#include "imageops/luma_chroma.h"
#include "imageops/window_definitions.h"
#include "paint/airbrush.h"
#include "paint/crackle.h"
#include "paint/droplet.h"
#include "paint/luma_strength.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane BoxMean(int radius, const BytePlane& plane) {
  return RangeMeanByDefinition(Square(radius), plane, plane, 255);
}

TEST(DropletStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int radius) {
    const BytePlane luma(LumaPlane709(picture));
    BytePlane patches(luma.copy());
    for (int i = 0; i < 4; ++i) patches.reference(RangeModeByDefinition(Square(radius), patches, patches, 255));
    patches.reference(MedianByDefinition(Square(radius), patches));
    for (const float strength : {0.0f, 0.85f, 1.0f, 2.5f}) {
      const BytePlane result(AtStrength(strength, luma, patches));
      const auto soften = [](float sample, float mean) { return ToByte(0.5f * mean + 0.5f * sample); };
      ExpectWithAnyWorkers(ReplaceLuma(picture, luma, EachPixel(soften, result, BoxMean(1, result))),
                           [&] { return DropletStyle(radius, strength, 4, picture); });
    }
  });
}

TEST(CrackleStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int radius) {
    for (const int limit : {0, 10, 200}) {
      const BytePlane luma(LumaPlane709(picture));
      BytePlane cells(luma.copy());
      for (int i = 0; i < 3; ++i)
        cells.reference(RangeModeByDefinition(Square(radius - 1 + i), luma, cells, limit + i));
      EXPECT_EQ("", FirstDifference(cells, CracklePlane(radius - 1, limit, 3, picture)));
      for (const float strength : {0.0f, 1.0f, 1.7f})
        ExpectWithAnyWorkers(ReplaceLuma(picture, luma, AtStrength(strength, luma, cells)),
                             [&] { return CrackleStyle(radius - 1, limit, 3, strength, picture); });
    }
  });
}

BytePlane ChainByDefinition(bool darkFirst, int spread, BytePlane plane) {
  for (const bool outer : {true, false, false, true}) {
    plane.reference(outer == darkFirst ? MaxByDefinition(Square(spread), plane)
                                       : MinByDefinition(Square(spread), plane));
    plane.reference(BoxMean(spread, plane));
  }
  return plane;
}

TEST(AirbrushStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int spread) {
    const FloatPlane y(FloatLuma709(picture));
    const BytePlane truncated(blitz::cast<unsigned char>(y));
    const BytePlane a(ChainByDefinition(true, spread, truncated)), b(ChainByDefinition(false, spread, truncated));
    for (const float mix : {-2.0f, 0.0f, 0.4f * 5 - 2, 0.35f, 1.0f, 3.0f})
      for (const float push : {0.0f, -1.5f, -5.0f}) {
        const auto paint = [&](float luma, float dark, float bright) {
          const float smooth = std::clamp(dark + mix * (bright - dark), 0.0f, 255.0f);
          return std::clamp(luma + push * (smooth - luma), 0.0f, 255.0f);
        };
        ExpectWithAnyWorkers(WithLuma709(picture, EachPixel<float>(paint, y, a, b)),
                             [&] { return AirbrushStyle(spread, mix, push, picture); });
      }
  });
}

TEST(PatchStyles, StopBetweenPasses) {
  std::mt19937 rng(3);
  const ChannelSet picture = RandomPicture(9, 9, rng);
  EXPECT_EQ("", StopsAtEachOf(6, [&] { DropletStyle(1, 1.0f, 4, picture); }));
  EXPECT_EQ("", StopsAtEachOf(5, [&] { CrackleStyle(1, 5, 5, 1.0f, picture); }));
  EXPECT_EQ("", StopsAtEachOf(8, [&] { AirbrushStyle(1, 0.5f, -1.0f, picture); }));
}

}  // namespace
}  // namespace quentara
