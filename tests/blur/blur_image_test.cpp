#include "blur/blur_image.h"

#include <gtest/gtest.h>

#include <cmath>

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
    values.reference(RangeMeanByDefinition(reach, gaussian ? plane : values, values, settings.thresh));
  }
  return values;
}

TEST(BlurImage, EqualsItsDefinitionInEveryTypeAndModeWithAnyWorkers) {
  ForPictures([](const ChannelSet& image, int radius) {
    for (const BlurType type : {BlurType::Gaussian, BlurType::Box})
      for (const int quality : {kFast, kHigh}) {
        SCOPED_TRACE(testing::Message() << "type " << static_cast<int>(type) << " quality " << quality);
        const BlurSettings settings = RangeBlur(type, quality, radius, 25);
        const BytePlane luma(LumaPlane709(image));
        const ChannelSet byChannel = Rgb([&](int i) { return BlurredByDefinition(settings, image.planes(i)); });
        ExpectWithAnyWorkers(ReplaceLuma(image, luma, BlurredByDefinition(settings, luma)),
                             [&] { return BlurImage(settings, LumaMode, image); });
        ExpectWithAnyWorkers(byChannel, [&] { return BlurImage(settings, ChannelMode, image); });
        for (const BlurMode mode : {LumaMode, ChannelMode})
          ExpectWithAnyWorkers(Grey(byChannel.planes(2)),
                               [&] { return BlurImage(settings, mode, Grey(image.planes(2))); });
      }
  });
}

BytePlane SupersmartByDefinition(float blurring, int testRadius, int blurRadius, const BytePlane& plane) {
  const FloatPlane deviations(
      MedianDeviationByDefinition(Square(testRadius), plane, MedianByDefinition(Square(testRadius), plane)));
  const float least = blitz::min(deviations), largest = std::max(1e-6f, blitz::max(deviations));
  const auto mix = [&](float sample, float deviation, float median) {
    const float share = (deviation - least) / largest;
    const float weight = static_cast<float>(std::pow(double{share}, double{blurring}));
    return sample * weight + median * (1.0f - weight) + 0.5f;
  };
  return EachPixel(mix, plane, deviations, MedianByDefinition(Square(blurRadius), plane));
}

TEST(SupersmartBlur, EqualsItsDefinitionOnEachPlaneInBothModesWithAnyWorkers) {
  ForPictures([](ChannelSet image, int) {
    image.planes(1) = 90;  // flat: it keeps its values beside the others
    const BytePlane luma(LumaPlane709(image));
    for (const float blurring : {0.05f, 0.25f, 1.0f})
      for (const auto& [test, blur] : {std::pair{2, 2}, {1, 4}, {5, 3}}) {
        SCOPED_TRACE(testing::Message() << "blurring " << blurring << " radii " << test << " " << blur);
        const BlurSettings settings{BlurType::Supersmart, 9, 3, kHigh, blurring, test, blur};
        const auto blurred = [&, r1 = test, r2 = blur](const BytePlane& plane) {
          return SupersmartByDefinition(blurring, r1, r2, plane);
        };
        const ChannelSet expected = Rgb([&](int i) { return blurred(image.planes(i)); });
        EXPECT_EQ("", FirstDifference(image.planes(1), expected.planes(1)));
        ExpectWithAnyWorkers(expected, [&] { return BlurImage(settings, ChannelMode, image); });
        ExpectWithAnyWorkers(ReplaceLuma(image, luma, blurred(luma)),
                             [&] { return BlurImage(settings, LumaMode, image); });
      }
  });
}

TEST(BlurImage, StopsAfterAnyPass) {
  std::mt19937 rng(3);
  const ChannelSet image = RandomPicture(12, 12, rng);
  for (const auto& [checks, type, quality] : {std::tuple{3, BlurType::Gaussian, kHigh},
                                              {4, BlurType::Gaussian, kFast},
                                              {2, BlurType::Box, kFast},
                                              {4, BlurType::Supersmart, kFast}}) {
    const BlurSettings settings = RangeBlur(type, quality, 1, 20);
    EXPECT_EQ("", StopsAtEachOf(checks, [&] { BlurImage(settings, ChannelMode, image); }));
  }
  EXPECT_EQ("", StopsAtEachOf(1, [&] { EXPECT_EQ("", FirstDifference(image, SupersmartBlur(0.0f, 5, 10, image))); }));
}

}  // namespace
}  // namespace quentara
