#include "blur/blur_image.h"

#include <gtest/gtest.h>

#include "blur/supersmart_blur.h"
#include "imageops/luma.h"
#include "imageops/window_definitions.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BlurSettings RangeBlur(BlurType type, int quality, int radius, int thresh) {
  return {type, radius, thresh, quality, 0.25f, 5, 10};
}

BytePlane BlurredByDefinition(const BlurSettings& settings, const BytePlane& plane) {
  const bool gaussian = settings.type == BlurType::Gaussian, high = settings.quality == kHigh;
  const int passes = !gaussian ? 2 : high ? 3 : 4;
  BytePlane values(plane.copy());
  for (int i = 0; i < passes; ++i) {
    const LineDirection direction = i % 2 == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
    const Reach reach = high ? Square(settings.radius) : Line(settings.radius, direction);
    const BytePlane centre(gaussian ? plane.copy() : values.copy());
    values.reference(RangeMeanByDefinition(reach, centre, values, settings.thresh));
  }
  return values;
}

TEST(BlurImage, EqualsItsDefinitionInEveryTypeAndModeWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 23}, {23, 1}, {37, 20}})
    for (const BlurType type : {BlurType::Gaussian, BlurType::Box})
      for (const int quality : {kFast, kHigh}) {
        const BlurSettings settings = RangeBlur(type, quality, 2, 25);
        const ChannelSet image = RandomPicture(height, width, rng);
        const BytePlane luma(LumaPlane709(image));
        const ChannelSet byLuma = ReplaceLuma(image, luma, BlurredByDefinition(settings, luma));
        ChannelSet byChannel = image;
        for (int i = 0; i < 3; ++i) byChannel.planes(i).reference(BlurredByDefinition(settings, image.planes(i)));
        const ChannelSet grey("L", image.width(), image.height(), image.planes(2));
        SCOPED_TRACE(testing::Message() << height << "x" << width << " type " << static_cast<int>(type) << " quality "
                                        << quality);
        ExpectWithAnyWorkers(byLuma, [&] { return BlurImage(settings, LumaMode, image); });
        ExpectWithAnyWorkers(byChannel, [&] { return BlurImage(settings, ChannelMode, image); });
        for (const BlurMode mode : {LumaMode, ChannelMode})
          ExpectWithAnyWorkers(byChannel.planes(2),
                               [&] { return BytePlane(BlurImage(settings, mode, grey).planes(0)); });
      }
}

TEST(BlurImage, HandsSupersmartItsThreeNumbersInBothModes) {
  std::mt19937 rng(2);
  const ChannelSet image = RandomPicture(30, 26, rng);
  const BlurSettings settings{BlurType::Supersmart, 9, 3, kHigh, 0.5f, 2, 4};
  EXPECT_EQ("", FirstDifference(SupersmartBlur(0.5f, 2, 4, image), BlurImage(settings, ChannelMode, image)));
  const BytePlane luma(LumaPlane709(image));
  const ChannelSet blurred = SupersmartBlur(0.5f, 2, 4, ChannelSet("L", 26, 30, luma));
  EXPECT_EQ("", FirstDifference(ReplaceLuma(image, luma, blurred.planes(0)), BlurImage(settings, LumaMode, image)));
}

TEST(BlurImage, StopsAfterAnyPass) {
  std::mt19937 rng(3);
  const ChannelSet image = RandomPicture(12, 12, rng);
  const auto run = [&](BlurType type, int quality) {
    return [&image, type, quality] { BlurImage(RangeBlur(type, quality, 1, 20), ChannelMode, image); };
  };
  EXPECT_EQ("", StopsAtEachOf(3, run(BlurType::Gaussian, kHigh)));
  EXPECT_EQ("", StopsAtEachOf(4, run(BlurType::Gaussian, kFast)));
  EXPECT_EQ("", StopsAtEachOf(2, run(BlurType::Box, kFast)));
  EXPECT_EQ("", StopsAtEachOf(4, run(BlurType::Supersmart, kFast)));
}

}  // namespace
}  // namespace quentara
