#include "paint/flat_detailed.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numeric>

#include "blur/small_smooth.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

BytePlane QuantisedByDefinition(float level, const ChannelSet& picture) {
  BytePlane values(BrightestPlane(picture));
  std::map<std::array<bool, 3>, std::vector<int>> octants;
  for (int p = 0; p < static_cast<int>(picture.pixelCount()); ++p) {
    const auto above = [&](int i) { return static_cast<float>(picture.planes(i).data()[p]) > level; };
    octants[{above(0), above(1), above(2)}].push_back(p);
  }
  for (const auto& [octant, points] : octants) {
    std::vector<unsigned char> samples;
    for (const int p : points) samples.push_back(values.data()[p]);
    std::sort(samples.begin(), samples.end());
    for (const int p : points) values.data()[p] = samples[(samples.size() - 1) / 2];
  }
  return values;
}

ChannelSet FlatByDefinition(float level, bool temporalFix, const ChannelSet& picture) {
  const BytePlane smooth(BoxSmooth3(1, QuantisedByDefinition(level, picture)));
  if (!temporalFix) return ReplaceValue(picture, smooth);
  const BytePlane q0(QuantisedByDefinition(level, picture)), q1(QuantisedByDefinition(level + 2.0f, picture)),
      q2(QuantisedByDefinition(level - 2.0f, picture));
  FloatPlane value(q0.shape());
  for (int p = 0; p < static_cast<int>(picture.pixelCount()); ++p)
    value.data()[p] = 0.5f * static_cast<float>(q0.data()[p]) + 0.25f * static_cast<float>(q1.data()[p]) +
                      0.25f * static_cast<float>(q2.data()[p]);
  return ReplaceValue(picture, value);
}

PointList FirstPoints(int count) {
  PointList points(static_cast<std::size_t>(count));
  std::iota(points.begin(), points.end(), 0);
  return points;
}

TEST(FlatDetailed, EqualsItsDefinitionOnRandomPictures) {
  std::mt19937 rng(81);
  for (const auto& [height, width] : {std::pair{1, 1}, {2, 3}, {33, 40}})
    for (const float deviation : {-2.5f, -0.5f, 1.5f})
      for (const bool skin : {false, true}) {
        const ChannelSet picture = RandomPicture(height, width, rng);
        const PointList points = FirstPoints(skin ? height * width / 2 + 1 : 0);
        float level = 112.0f + deviation * 15.0f;
        if (skin) {
          const Tones tones = ToneLevels(points, LumaPlane601(picture));
          level = tones.median + deviation * tones.spread;
        }
        level = std::floor(level) + 0.5f;
        SCOPED_TRACE(testing::Message() << height << "x" << width << " deviation " << deviation << " skin " << skin);
        for (const bool temporalFix : {false, true})
          ExpectWithAnyWorkers(FlatByDefinition(level, temporalFix, picture),
                               [&] { return FlatDetailed(points, deviation, temporalFix, picture); });
      }
}

// Greys 95 and 110, half and half: a cut between them keeps two tones, any other makes one.
int TonesLeft(int skinPixels, float deviation) {
  ChannelSet picture("RGB", 10, 10);
  for (int i = 0; i < 3; ++i)
    for (int y = 0; y < 10; ++y)
      picture.planes(i)(y, blitz::Range::all()) = static_cast<unsigned char>(y < 5 ? 95 : 110);
  const ChannelSet flat = FlatDetailed(FirstPoints(skinPixels), deviation, false, picture);
  return flat.planes(0)(0, 0) == flat.planes(0)(9, 0) ? 1 : 2;
}

TEST(FlatDetailed, FollowsTheSkinFromATenthOfTheFrameOn) {
  EXPECT_EQ(2, TonesLeft(0, -0.5f));   // cut at 104.5
  EXPECT_EQ(2, TonesLeft(9, -0.5f));   // too little skin to be heard
  EXPECT_EQ(2, TonesLeft(10, -0.5f));  // cut at 95.5
  EXPECT_EQ(1, TonesLeft(9, 0.5f));    // cut at 119.5
  EXPECT_EQ(2, TonesLeft(10, 0.5f));   // cut at 95.5 again: the skin has no spread
}

}  // namespace
}  // namespace quentara
