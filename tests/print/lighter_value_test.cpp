#include "print/lighter_value.h"

#include <gtest/gtest.h>

#include "imageops/hsv.h"
#include "support/planes.h"

namespace quentara {
namespace {

TEST(LighterValue, EqualsItsDefinitionOnRandomPictures) {
  std::mt19937 rng(61);
  for (const float lighter : {0.01f, 0.4f, 1.0f}) {
    const ChannelSet picture = RandomPicture(17, 40, rng);
    FloatChannelSet hsv = RgbToHsv(picture);
    for (float& v : hsv.planes(2)) {
      const float t = 1.0f - v / 255.0f;
      const float w = v * t + 255.0f * (1.0f - t);
      v = w * lighter + v * (1.0f - lighter);
    }
    const std::vector<FloatChannelSet> planes = hsv.Split();
    EXPECT_EQ("", FirstDifference(HsvToRgb(planes[0], planes[1], planes[2]), LighterValue(lighter, picture)));
  }
}

}  // namespace
}  // namespace quentara
