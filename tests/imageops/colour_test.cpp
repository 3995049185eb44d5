#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/luma_chroma.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

using Pixel = std::array<int, 3>;

ChannelSet OnePixel(const Pixel& pixel) {
  ChannelSet picture("RGB", 1, 1);
  for (int i = 0; i < 3; ++i) picture.planes(i)(0, 0) = static_cast<unsigned char>(pixel[static_cast<std::size_t>(i)]);
  return picture;
}

Pixel PixelAt(const ChannelSet& picture, int y, int x) {
  return {picture.planes(0)(y, x), picture.planes(1)(y, x), picture.planes(2)(y, x)};
}

Pixel ReplacedByDefinition(const Pixel& pixel, int oldLuma, int newLuma) {
  Pixel moved;
  std::transform(pixel.begin(), pixel.end(), moved.begin(), [&](int c) { return c + newLuma - oldLuma; });
  const float luma = static_cast<float>(newLuma);
  const int least = *std::min_element(moved.begin(), moved.end());
  const int largest = *std::max_element(moved.begin(), moved.end());
  for (int& c : moved) {
    if (least < 0) c = static_cast<int>(luma + luma * (c - luma) / (luma - least) + 0.5f);
    if (largest > 255) c = static_cast<int>(luma + (255 - luma) * (c - luma) / (largest - luma) + 0.5f);
    c &= 255;
  }
  return moved;
}

TEST(Luma, RoundsTheWeightedSumOfEachStandardAndFindsTheBrightest) {
  std::mt19937 rng(1);
  const ChannelSet picture = RandomPicture(40, 61, rng);
  const BytePlane hd(LumaPlane709(picture)), sd(LumaPlane601(picture)), brightest(BrightestPlane(picture));
  EXPECT_EQ("", FirstDifference(sd, LumaImage601(picture).planes(0)));
  EXPECT_EQ("", FirstDifference(hd, LumaImage709(picture).planes(0)));
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 61; ++x) {
      const auto [r, g, b] = PixelAt(picture, y, x);
      EXPECT_NEAR(0.2126 * r + 0.7152 * g + 0.0722 * b, hd(y, x), 0.5001);
      EXPECT_NEAR(0.299 * r + 0.587 * g + 0.114 * b, sd(y, x), 0.5001);
      EXPECT_EQ(std::max({r, g, b}), brightest(y, x));
    }
  const ChannelSet grey("L", 61, 40, picture.planes(2));
  EXPECT_EQ("", FirstDifference(picture.planes(2), LumaPlane709(grey)));
  EXPECT_EQ("", FirstDifference(grey, LumaImage601(grey)));
}

TEST(ReplaceLuma, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(3);
  for (const int workers : {1, 2, 3, 7})
    for (const auto& [height, width] : {std::pair{1, 1}, {1, 300}, {300, 1}, {41, 67}})
      for (const int change : {0, 3, 255}) {
        StandaloneHost host(workers);
        const Plugin::HostScope scope(host);
        const ChannelSet picture = RandomPicture(height, width, rng);
        const BytePlane before(LumaPlane709(picture)), after(RandomPlaneNear(before, change, rng));
        const ChannelSet result = ReplaceLuma(picture, before, after);
        for (int y = 0; y < height; ++y)
          for (int x = 0; x < width; ++x)
            ASSERT_EQ(ReplacedByDefinition(PixelAt(picture, y, x), before(y, x), after(y, x)), PixelAt(result, y, x))
                << height << "x" << width << " (" << y << ", " << x << ") workers " << workers;
      }
}

TEST(Hsv, PlacesTheHuesAndComesBack) {
  const auto hue = [](const Pixel& pixel) { return RgbToHsv(OnePixel(pixel)).planes(0)(0, 0); };
  const std::pair<Pixel, float> hues[] = {{{255, 0, 0}, 0.0f},   {{255, 255, 0}, 60.0f}, {{0, 255, 0}, 120.0f},
                                          {{0, 0, 255}, 240.0f}, {{90, 0, 90}, 300.0f},  {{77, 77, 77}, 0.0f}};
  for (const auto& [pixel, degrees] : hues) EXPECT_EQ(degrees, hue(pixel));
  EXPECT_EQ(0.0f, RgbToHsv(OnePixel({0, 0, 0})).planes(1)(0, 0));
  EXPECT_EQ(0.75f, RgbToHsv(OnePixel({200, 50, 100})).planes(1)(0, 0));

  std::mt19937 rng(4);
  for (const int workers : {1, 3}) {
    StandaloneHost host(workers);
    const Plugin::HostScope scope(host);
    const ChannelSet picture = RandomPicture(80, 90, rng);
    const auto parts = RgbToHsv(picture).Split();
    EXPECT_EQ("", FirstDifference(picture, HsvToRgb(parts[0], parts[1], parts[2])));
    for (const float degrees : parts[0].planes(0)) ASSERT_TRUE(degrees >= 0.0f && degrees < 360.0f) << degrees;
  }
}

TEST(Hsv, TakesAFullTurnForNone) {
  FloatChannelSet hue("F", 1, 1), saturation("F", 1, 1), value("F", 1, 1);
  hue.planes(0) = 360.0f;
  saturation.planes(0) = 1.0f;
  value.planes(0) = 200.0f;
  EXPECT_EQ((Pixel{200, 0, 0}), PixelAt(HsvToRgb(hue, saturation, value), 0, 0));
}

TEST(Luma709, KeepsTheRoundingAndComesBack) {
  EXPECT_NEAR(54.713f, FloatLuma709(OnePixel({255, 0, 0}))(0, 0), 1e-4f);
  FloatPlane beyondWhite(1, 1);
  beyondWhite = 300.0f;
  EXPECT_EQ((Pixel{99, 255, 255}), PixelAt(WithLuma709(OnePixel({0, 255, 255}), beyondWhite), 0, 0));

  std::mt19937 rng(5);
  for (const int workers : {1, 3}) {
    StandaloneHost host(workers);
    const Plugin::HostScope scope(host);
    const ChannelSet picture = RandomPicture(31, 50, rng);
    EXPECT_EQ("", FirstDifference(picture, WithLuma709(picture, FloatPlane(FloatLuma709(picture) - 0.5f))));
  }
}

}  // namespace
}  // namespace quentara
