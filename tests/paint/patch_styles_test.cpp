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
#include "support/planes.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

TEST(DropletStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int radius) {
    const BytePlane luma(LumaPlane709(picture));
    BytePlane patches(luma.copy());
    for (int i = 0; i < 4; ++i) patches.reference(RangeModeByDefinition(radius, patches, patches, 255));
    patches.reference(MedianByDefinition(Square(radius), patches));
    for (const float strength : {0.0f, 0.85f, 1.0f, 2.5f}) {
      BytePlane result(AtStrength(strength, luma, patches).copy());
      const BytePlane mean(BoxMeanByDefinition(1, result));
      for (int i = 0; i < static_cast<int>(result.numElements()); ++i)
        result.data()[i] = ToByte(0.5f * mean.data()[i] + 0.5f * result.data()[i]);
      ExpectWithAnyWorkers(ReplaceLuma(picture, luma, result),
                           [&] { return DropletStyle(radius, strength, 4, picture); });
    }
  });
}

TEST(CrackleStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int radius) {
    for (const int limit : {0, 10, 200}) {
      const BytePlane luma(LumaPlane709(picture));
      BytePlane cells(luma.copy());
      for (int i = 0; i < 3; ++i) cells.reference(RangeModeByDefinition(radius - 1 + i, luma, cells, limit + i));
      EXPECT_EQ("", FirstDifference(cells, CracklePlane(radius - 1, limit, 3, picture)));
      for (const float strength : {0.0f, 1.0f, 1.7f})
        ExpectWithAnyWorkers(ReplaceLuma(picture, luma, AtStrength(strength, luma, cells)),
                             [&] { return CrackleStyle(radius - 1, limit, 3, strength, picture); });
    }
  });
}

BytePlane ChainByDefinition(bool darkFirst, int spread, BytePlane plane) {
  for (const bool outer : {true, false, false, true}) {
    plane.reference(outer == darkFirst ? MaxByDefinition(spread, plane) : MinByDefinition(spread, plane));
    plane.reference(BoxMeanByDefinition(spread, plane));
  }
  return plane;
}

TEST(AirbrushStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int spread) {
    const FloatPlane y(FloatLuma709(picture));
    const BytePlane truncated(blitz::cast<unsigned char>(y));
    const FloatPlane a(blitz::cast<float>(ChainByDefinition(true, spread, truncated)));
    const FloatPlane b(blitz::cast<float>(ChainByDefinition(false, spread, truncated)));
    for (const float mix : {-2.0f, 0.0f, 0.4f * 5 - 2, 0.35f, 1.0f, 3.0f})
      for (const float push : {0.0f, -1.5f, -5.0f}) {
        FloatPlane f(a.copy());
        if (mix != 0.0f) f = f + mix * (b - f);
        f = where(f > 255.0f, 255.0f, f);
        f = where(f < 0.0f, 0.0f, f);
        f = y + push * (f - y);
        f = where(f > 255.0f, 255.0f, f);
        f = where(f < 0.0f, 0.0f, f);
        ExpectWithAnyWorkers(WithLuma709(picture, f), [&] { return AirbrushStyle(spread, mix, push, picture); });
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
