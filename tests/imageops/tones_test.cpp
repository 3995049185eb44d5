// Skin, the tones of a picture, and the brightening that stands on both.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "imageops/hsv.h"
#include "imageops/lighter_tone.h"
#include "imageops/luma.h"
#include "imageops/skin_tones.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

// The test as a list of rejections, on the sorted samples of one pixel.
bool SkinByDefinition(int red, int green, int blue) {
  std::array<int, 3> s = {red, green, blue};
  std::sort(s.begin(), s.end());
  if (s[2] != red || blue - green > 50 || s[2] < 100) return false;
  if (!(static_cast<float>(s[1]) * 2.25f > static_cast<float>(s[2])) || s[2] <= s[1]) return false;
  if (s[1] - s[0] < 11 && s[2] - s[1] < 11) return false;
  bool orange = false;
  if (s[1] == green) {
    orange = 5 * (s[2] - s[1]) >= s[1] - s[0];
    if (!orange && !(s[2] > 190 && s[2] - s[1] > 5)) orange = 10 * (s[2] - s[1]) >= s[1] - s[0];
  }
  if (!orange && (s[1] != blue || 2 * (s[2] - s[1]) < s[1] - s[0])) return false;
  return s[2] - s[1] < 101;
}

TEST(SkinPointList, AgreesWithItsDefinitionOnEveryColour) {
  const BytePlane green(PlaneOf(256, 256, [](int y, int) { return y; }));
  const BytePlane blue(PlaneOf(256, 256, [](int, int x) { return x; }));
  for (int r = 0; r < 256; ++r) {
    PointList expected;
    for (int point = 0; point < 256 * 256; ++point)
      if (SkinByDefinition(r, point / 256, point % 256)) expected.push_back(point);
    const BytePlane red(PlaneOf(256, 256, [&](int, int) { return r; }));
    ForInstructionSets([&] { ASSERT_EQ(expected, SkinPointList(red, green, blue)) << "red " << r; });
    StandaloneHost host(1 + r % 7);
    const Plugin::HostScope scope(host);
    ASSERT_EQ(expected, SkinPointList(red, green, blue)) << "red " << r;
  }
}

TEST(ToneLevels, TakesTheLowerMedianAndTheSpreadOfThePoints) {
  std::mt19937 rng(6);
  for (const int count : {1, 2, 5, 100}) {
    const BytePlane plane(RandomPlane(10, 20, rng));
    PointList points(static_cast<std::size_t>(count));
    for (int& point : points) point = static_cast<int>(rng() % 200);
    std::vector<int> samples;
    for (const int point : points) samples.push_back(plane.data()[point]);
    std::sort(samples.begin(), samples.end());
    const int median = samples[(samples.size() - 1) / 2];
    float sum = 0.0f;
    for (const int sample : samples) sum += static_cast<float>(std::abs(sample - median));
    ForWorkers([&](int) {
      const Tones tones = ToneLevels(points, plane);
      EXPECT_EQ(median, tones.median) << count << " points";
      EXPECT_EQ(sum / static_cast<float>(count), tones.spread) << count << " points";
    });
  }
}

TEST(ToneLevels, FallsBackToTheWholePlane) {
  const auto tonesOf = [](int height, int width, int first, int others) {
    const Tones tones = ToneLevels({}, PlaneOf(height, width, [&](int, int x) { return x == 0 ? first : others; }));
    return std::pair{tones.median, tones.spread};
  };
  EXPECT_EQ(std::pair(100.0f, 0.0f), tonesOf(1, 2, 98, 100));  // a mean of 99
  EXPECT_EQ(std::pair(100.0f, 0.5f), tonesOf(1, 2, 99, 100));  // 99.5 rounds up to 100
  EXPECT_EQ(std::pair(151.0f, 50.5f), tonesOf(1, 2, 100, 201));
  // A running single-precision sum of these samples stalls at half of their mean.
  EXPECT_EQ(std::pair(101.0f, 0.0f), tonesOf(4096, 4200, 101, 101));
}

template <class Real>
ChannelSet BentByDefinition(const ChannelSet& picture, float exponent) {
  const auto power = [&](Real base) {
    return static_cast<Real>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
  };
  const auto bend = [&](int c) { return Real{255} * power(static_cast<Real>(c)) / power(255) + Real{0.5}; };
  return Rgb([&](int i) { return EachPixel(bend, picture.planes(i)); });
}

template <class Real>
ChannelSet LighterByDefinition(float gamma, const ChannelSet& picture) {
  const ChannelSet bent = BentByDefinition<Real>(picture, gamma);
  const BytePlane values(BrightestPlane(bent));
  const Tones tones = ToneLevels(SkinPointList(bent.planes(0), bent.planes(1), bent.planes(2)), values);
  const float t = std::floor(tones.median - tones.spread) + 0.5f;
  const auto raise = [&](float v) { return v > t ? 255.0f : std::floor(v * 255.0f / t + 0.5f); };
  return BentByDefinition<Real>(ReplaceValue(bent, EachPixel<float>(raise, values)), 1.0f / gamma);
}

TEST(LighterTone, EqualsItsDefinitionInThePrecisionOfTheWorkers) {
  ForPictures([](const ChannelSet& picture, int) {
    ChannelSet warm = picture;
    for (int p = 0; p < static_cast<int>(picture.pixelCount()); p += 3) {
      warm.planes(0).data()[p] = static_cast<unsigned char>(180 + p % 70);
      warm.planes(1).data()[p] = 130, warm.planes(2).data()[p] = 100;
    }
    for (const ChannelSet* seen : {&picture, static_cast<const ChannelSet*>(&warm)})
      for (const float gamma : {1.0f, 1.17f, 1.35f, 1.5f}) {
        const ChannelSet alone = LighterByDefinition<float>(gamma, *seen);
        const ChannelSet shared = LighterByDefinition<double>(gamma, *seen);
        ForWorkers([&](int workers) {
          EXPECT_EQ("", FirstDifference(workers == 1 ? alone : shared, LighterTone(gamma, *seen))) << "gamma " << gamma;
        });
      }
  });
}

}  // namespace
}  // namespace quentara
