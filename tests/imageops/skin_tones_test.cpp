#include "imageops/skin_tones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "render/standalone_host.h"
#include "support/planes.h"

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

// Every green and blue, with the green down the rows.
TEST(SkinPointList, AgreesWithItsDefinitionOnEveryColourWithAnyWorkers) {
  BytePlane red(256, 256), green(256, 256), blue(256, 256);
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x)
      green(y, x) = static_cast<unsigned char>(y), blue(y, x) = static_cast<unsigned char>(x);
  for (int r = 0; r < 256; ++r) {
    red = static_cast<unsigned char>(r);
    PointList expected;
    for (int g = 0; g < 256; ++g)
      for (int b = 0; b < 256; ++b)
        if (SkinByDefinition(r, g, b)) expected.push_back(g * 256 + b);
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
    const Tones tones = ToneLevels(points, plane);
    EXPECT_EQ(median, tones.median) << count << " points";
    EXPECT_EQ(sum / static_cast<float>(count), tones.spread) << count << " points";
  }
}

TEST(ToneLevels, FallsBackToTheWholePlane) {
  const auto tonesOf = [](int a, int b) {
    BytePlane plane(1, 2);
    plane = static_cast<unsigned char>(a), static_cast<unsigned char>(b);
    const Tones tones = ToneLevels({}, plane);
    return std::pair{tones.median, tones.spread};
  };
  EXPECT_EQ(std::pair(100.0f, 0.0f), tonesOf(98, 100));  // a mean of 99
  EXPECT_EQ(std::pair(100.0f, 0.5f), tonesOf(99, 100));  // 99.5 rounds up to 100
  EXPECT_EQ(std::pair(151.0f, 50.5f), tonesOf(100, 201));
}

TEST(ToneLevels, CountsALargePlaneExactly) {
  BytePlane plane(4096, 4200);  // a running single-precision sum of these samples stalls at half of their mean
  plane = 101;
  EXPECT_EQ(101.0f, ToneLevels({}, plane).median);
}

}  // namespace
}  // namespace quentara
