// The styles of flat tones: Flat detailed and Flat shaded, and the strength of a style.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "blur/small_smooth.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/window_definitions.h"
#include "paint/flat_detailed.h"
#include "paint/flat_shaded.h"
#include "paint/luma_strength.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane QuantisedByDefinition(float level, const ChannelSet& picture) {
  const BytePlane values(BrightestPlane(picture));
  const auto octantOf = [&](float red, float green, float blue) {
    return (red > level ? 1 : 0) + (green > level ? 2 : 0) + (blue > level ? 4 : 0);
  };
  const BytePlane octants(EachPixel(octantOf, picture.planes(0), picture.planes(1), picture.planes(2)));
  std::map<int, std::vector<unsigned char>> samples;
  for (int p = 0; p < static_cast<int>(picture.pixelCount()); ++p)
    samples[octants.data()[p]].push_back(values.data()[p]);
  for (auto& [octant, sorted] : samples) std::sort(sorted.begin(), sorted.end());
  return EachPixel([&](int octant) { return samples[octant][(samples[octant].size() - 1) / 2]; }, octants);
}

ChannelSet FlatByDefinition(float level, bool temporalFix, const ChannelSet& picture) {
  const BytePlane q0(QuantisedByDefinition(level, picture));
  if (!temporalFix) return ReplaceValue(picture, BoxSmooth3(1, q0));
  const auto mean = [](float at, float above, float below) { return 0.5f * at + 0.25f * above + 0.25f * below; };
  return ReplaceValue(picture, EachPixel<float>(mean, q0, QuantisedByDefinition(level + 2.0f, picture),
                                                QuantisedByDefinition(level - 2.0f, picture)));
}

PointList FirstPoints(std::uint32_t count) {
  PointList points(count);
  std::iota(points.begin(), points.end(), 0);
  return points;
}

TEST(FlatDetailed, EqualsItsDefinitionOnRandomPictures) {
  ForPictures([](const ChannelSet& picture, int) {
    for (const float deviation : {-2.5f, -0.5f, 1.5f})
      for (const bool skin : {false, true}) {
        SCOPED_TRACE(testing::Message() << "deviation " << deviation << " skin " << skin);
        const PointList points = FirstPoints(skin ? picture.pixelCount() / 2 + 1 : 0);
        const Tones tones = skin ? ToneLevels(points, LumaPlane601(picture)) : Tones{112.0f, 15.0f};
        const float level = std::floor(tones.median + deviation * tones.spread) + 0.5f;
        for (const bool temporalFix : {false, true})
          ExpectWithAnyWorkers(FlatByDefinition(level, temporalFix, picture),
                               [&] { return FlatDetailed(points, deviation, temporalFix, picture); });
      }
  });
}

// Greys 95 and 110, half and half: a cut between them keeps two tones, any other makes one.
TEST(FlatDetailed, FollowsTheSkinFromATenthOfTheFrameOn) {
  const ChannelSet halves = Rgb([](int) { return PlaneOf(10, 10, [](int y, int) { return y < 5 ? 95 : 110; }); });
  const auto keepsTones = [&](std::uint32_t skinPixels, float deviation) {
    const ChannelSet flat = FlatDetailed(FirstPoints(skinPixels), deviation, false, halves);
    return flat.planes(0)(0, 0) != flat.planes(0)(9, 0);
  };
  EXPECT_TRUE(keepsTones(0, -0.5f));   // cut at 104.5
  EXPECT_TRUE(keepsTones(9, -0.5f));   // too little skin to be heard
  EXPECT_TRUE(keepsTones(10, -0.5f));  // cut at 95.5
  EXPECT_FALSE(keepsTones(9, 0.5f));   // cut at 119.5
  EXPECT_TRUE(keepsTones(10, 0.5f));   // cut at 95.5 again: the skin has no spread
}

BytePlane FlattenedByDefinition(const FlatShadedSettings& settings, const BytePlane& luma) {
  BytePlane flat(luma.copy());
  for (int i = 0; i < 8; ++i) {
    const LineDirection direction = i % 2 == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
    const int radius = settings.flatness + i;
    const Reach reach = settings.quality == kHigh ? Square(radius) : Line(radius, direction);
    flat.reference(RangeMedianByDefinition(reach, luma, flat, settings.simplicity + i));
  }
  return flat;
}

TEST(FlatShaded, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 23}, {23, 1}, {150, 12}})
    for (const FlatShadedSettings& settings : {FlatShadedSettings{0, 0, 1.0f, kFast},
                                               {0, 0, 1.0f, kHigh},
                                               {2, 20, 1.0f, kFast},
                                               {2, 20, 0.6f, kHigh},
                                               {100, 60, 1.0f, kFast},
                                               {100, 60, 1.0f, kHigh}}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " quality " << settings.quality << " flatness "
                                      << settings.flatness);
      const ChannelSet image = RandomPicture(height, width, rng);
      const BytePlane luma(LumaPlane709(image)), flat(FlattenedByDefinition(settings, luma));
      ExpectWithAnyWorkers(ReplaceLuma(image, luma, AtStrength(settings.strength, luma, flat)),
                           [&] { return FlatShaded(settings, image); });
    }
  const ChannelSet image = RandomPicture(40, 9, rng);
  for (const int quality : {kFast, kHigh})
    EXPECT_EQ("", StopsAtEachOf(8, [&] { FlatShaded({1, 20, 1.0f, quality}, image); }));
}

TEST(AtStrength, MixesBelowOneAndExaggeratesAboveIt) {
  BytePlane luma(1, 4), painted(1, 4), expected(1, 4);
  luma = 100, 100, 200, 30;
  painted = 120, 160, 120, 31;
  EXPECT_EQ("", FirstDifference(luma, AtStrength(0.0f, luma, painted)));
  EXPECT_EQ("", FirstDifference(painted, AtStrength(1.0f, luma, painted)));
  expected = 110, 130, 160, 31;
  EXPECT_EQ("", FirstDifference(expected, AtStrength(0.5f, luma, painted)));
  expected = 200, 255, 0, 35;
  EXPECT_EQ("", FirstDifference(expected, AtStrength(5.0f, luma, painted)));
}

}  // namespace
}  // namespace quentara
