#include "imageops/byte_map.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_styles.h"

namespace quentara {
namespace {

TEST(PowerMap, FollowsTheCurveInBothPrecisions) {
  for (const float exponent : {0.0f, 0.3f, 1.0f, 1.5f, 5.3333335f, 12.0f}) {
    SCOPED_TRACE(exponent);
    const ByteMap doubles = PowerMap(exponent), singles = SinglePowerMap(exponent);
    const double white = std::pow(255.0, static_cast<double>(exponent));
    for (int sample = 0; sample < 256; ++sample) {
      const double power = std::pow(static_cast<double>(sample), static_cast<double>(exponent));
      const float rounded = 255.0f * static_cast<float>(power) / static_cast<float>(white) + 0.5f;
      EXPECT_EQ(std::floor(255.0 * power / white + 0.5), doubles[static_cast<std::size_t>(sample)]) << sample;
      EXPECT_EQ(std::floor(rounded), singles[static_cast<std::size_t>(sample)]) << sample;
    }
  }
}

TEST(PowerMap, TakesExponentsBeyondTheRangeOfADouble) {
  const ByteMap map = PowerMap(6100.0);  // 255^6100 has no double
  EXPECT_EQ(255, map[255]);
  EXPECT_EQ(0, map[254]);
  EXPECT_EQ(94, PowerMap(254.0)[254]);            // 255 / e, about
  for (const double exponent : {127.5, 128.0}) {  // 255^exponent has one, but 255 times that has none
    EXPECT_EQ(255, PowerMap(exponent)[255]) << exponent;
    EXPECT_EQ(std::floor(255.0 * std::pow(254.0 / 255.0, exponent) + 0.5), PowerMap(exponent)[254]) << exponent;
  }
}

TEST(MapBytes, LooksEverySampleUpOnEveryInstructionSet) {
  std::mt19937 rng(1);
  const BytePlane plane(RandomPlane(7, 229, rng)), entries(RandomPlane(1, 256, rng));
  const ByteMap map = MakeByteMap([&](int sample) { return entries(0, sample); });
  const BytePlane expected(EachPixel([&](int sample) { return entries(0, sample); }, plane));
  ForInstructionSets([&] { ExpectWithAnyWorkers(expected, [&] { return MapBytes(map, plane); }); });
}

}  // namespace
}  // namespace quentara
