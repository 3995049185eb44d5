#include <gtest/gtest.h>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

// The long way: three planes there, two of them back.
ChannelSet ReplacedByDefinition(const ChannelSet& picture, const FloatPlane& value) {
  const std::vector<FloatChannelSet> hsv = RgbToHsv(picture).Split();
  return HsvToRgb(hsv[0], hsv[1], FloatChannelSet("L", picture.width(), picture.height(), value));
}

TEST(ReplaceValue, EqualsTheRoadThroughHsv) {
  std::mt19937 rng(41);
  ValueMap map;
  for (std::size_t i = 0; i < map.size(); ++i) map[i] = static_cast<float>((i * 73) % 256) * 0.99f;
  for (const auto& [height, width] : {std::pair{1, 1}, {3, 700}, {33, 40}})
    for (const int workers : {1, 2, 3, 7}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " workers " << workers);
      StandaloneHost host(workers);
      const Plugin::HostScope scope(host);
      const ChannelSet picture = RandomPicture(height, width, rng);
      const BytePlane bytes(RandomPlane(height, width, rng));
      FloatPlane floats(height, width), mapped(height, width);
      floats = 0.37f * bytes;
      const BytePlane brightest(BrightestPlane(picture));
      for (int p = 0; p < height * width; ++p) mapped.data()[p] = map[brightest.data()[p]];
      EXPECT_EQ("", FirstDifference(ReplacedByDefinition(picture, floats), ReplaceValue(picture, floats)));
      EXPECT_EQ("", FirstDifference(ReplacedByDefinition(picture, mapped), MapValue(picture, map)));
      floats = 1.0f * bytes;
      EXPECT_EQ("", FirstDifference(ReplacedByDefinition(picture, floats), ReplaceValue(picture, bytes)));
    }
}

}  // namespace
}  // namespace quentara
