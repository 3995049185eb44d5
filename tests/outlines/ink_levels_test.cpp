#include "outlines/ink_levels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "blur/blur_image.h"
#include "imageops/luma.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

TEST(InkLevels, MeetsItsWorkedNumbers) {
  for (const auto& [sensitivity, level] :
       {std::pair{0.0f, 254.0f}, {0.25f, 212.5f}, {0.5f, 170.0f}, {0.75f, 85.0f}, {1.0f, 0.0f}})
    EXPECT_EQ(level, InkLevels(sensitivity, 0.0f).level);
  EXPECT_EQ(135.0f, std::floor(InkLevels(0.6f, 0.0f).level));  // a little below 136 in single precision
  for (const auto& [strength, exponent] : {std::pair{0.0f, 1.0f}, {0.5f, 10.0f}, {1.0f, 100.0f}})
    EXPECT_EQ(exponent, InkLevels(0.0f, strength).exponent);
}

ChannelSet BentByDefinition(float level, float median, ChannelSet picture) {
  const auto log = [](float x) { return static_cast<float>(std::log(static_cast<double>(x))); };
  const double g = log((level < 1e-8f ? 1e-8f : level) / 255.0f) / (log(median) - log(255.0f));
  for (int i = 0; i < 3; ++i)
    for (unsigned char& sample : picture.planes(i))
      sample = static_cast<unsigned char>(std::trunc(255.0 * std::pow(sample / 255.0, g) + 0.5));
  return picture;
}

TEST(ToneToLevel, BendsEverySampleByThePower) {
  ForPictures([](const ChannelSet& picture, int radius) {
    const BytePlane luma(LumaPlane601(picture));
    const auto pixels = static_cast<int>(luma.numElements());
    for (const PointList& points : {PointList{}, PointList{0, pixels / 2, pixels - 1}})
      for (const float level : {0.0f, 85.0f, 135.99999f, 254.0f}) {
        SCOPED_TRACE(testing::Message() << points.size() << " points, level " << level);
        const ChannelSet bent = BentByDefinition(level, ToneLevels(points, luma).median, picture);
        ExpectWithAnyWorkers(bent, [&] { return ToneToLevel(level, points, picture); });
        const BlurSettings blur{BlurType::Box, radius, 30, kFast, 0.25f, 5, 10};
        EXPECT_EQ("", FirstDifference(bent, InkTones(level, points, nullptr, picture)));
        EXPECT_EQ("", FirstDifference(BlurImage(blur, LumaMode, bent), InkTones(level, points, &blur, picture)));
      }
  });
}

TEST(InkThreshold, CutsWhereItsDefinitionDoes) {
  ChannelSet lines("L", 256, 1);
  for (int x = 0; x < 256; ++x) lines.planes(0)(0, x) = static_cast<unsigned char>(x);
  for (const Ink& ink : {Ink{0.0f, 1.0f}, Ink{135.99999f, 25.0f}, Ink{170.0f, 1.0f}, Ink{254.0f, 100.0f}}) {
    SCOPED_TRACE(ink.level);
    BytePlane expected(1, 256);
    for (int x = 0; x < 256; ++x) {
      const double power = 255.0 * std::pow(x, static_cast<double>(ink.exponent)) / std::pow(255.0, ink.exponent);
      const double s = std::trunc(power + 0.5) / 255.0;
      const double shade = std::trunc(255.0 * (3.0 * s * s - 2.0 * s * s * s) + 0.5);
      expected(0, x) = shade > std::trunc(ink.level) + 0.5 ? 255 : 0;
    }
    ExpectWithAnyWorkers(expected, [&] { return InkThreshold(ink, lines).planes(0).copy(); });
  }
  EXPECT_EQ(0, InkThreshold({0.0f, 1.0f}, lines).planes(0)(0, 0));
  EXPECT_EQ(255, InkThreshold({254.0f, 1.0f}, lines).planes(0)(0, 255));
}

}  // namespace
}  // namespace quentara
