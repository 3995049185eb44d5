#include "outlines/tint_foreground.h"

#include <gtest/gtest.h>

#include "imageops/hsv.h"
#include "support/planes.h"

namespace quentara {
namespace {

TEST(TintForeground, TakesHueAndSaturationToFullValue) {
  std::mt19937 rng(71);
  const ChannelSet picture = RandomPicture(13, 300, rng);
  const std::vector<FloatChannelSet> hsv = RgbToHsv(picture).Split();
  FloatChannelSet white("L", picture.width(), picture.height());
  white.planes(0) = 255.0f;
  EXPECT_EQ("", FirstDifference(HsvToRgb(hsv[0], hsv[1], white), TintForeground(picture)));
}

}  // namespace
}  // namespace quentara
