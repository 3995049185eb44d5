#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/luma_chroma.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

using Pixel = std::array<int, 3>;

ChannelSet OnePixel(const Pixel& pixel) {
  return Rgb([&](int i) { return PlaneOf(1, 1, [&](int, int) { return pixel[static_cast<std::size_t>(i)]; }); });
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
  EXPECT_EQ("", FirstDifference(Grey(sd), LumaImage601(picture)));
  EXPECT_EQ("", FirstDifference(Grey(hd), LumaImage709(picture)));
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 61; ++x) {
      const auto [r, g, b] = PixelAt(picture, y, x);
      EXPECT_NEAR(0.2126 * r + 0.7152 * g + 0.0722 * b, hd(y, x), 0.5001);
      EXPECT_NEAR(0.299 * r + 0.587 * g + 0.114 * b, sd(y, x), 0.5001);
      EXPECT_EQ(std::max({r, g, b}), brightest(y, x));
    }
  const ChannelSet grey = Grey(picture.planes(2));
  EXPECT_EQ("", FirstDifference(picture.planes(2), LumaPlane709(grey)));
  EXPECT_EQ("", FirstDifference(grey, LumaImage601(grey)));
}

TEST(ReplaceLuma, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(3);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 300}, {300, 1}, {41, 67}})
    for (const int change : {0, 3, 255}) {
      const ChannelSet picture = RandomPicture(height, width, rng);
      const BytePlane before(LumaPlane709(picture)), after(RandomPlaneNear(before, change, rng));
      const ChannelSet expected = Rgb([&, h = height, w = width](std::size_t i) {
        return PlaneOf(h, w, [&](int y, int x) {
          return ReplacedByDefinition(PixelAt(picture, y, x), before(y, x), after(y, x))[i];
        });
      });
      SCOPED_TRACE(testing::Message() << height << "x" << width << " change " << change);
      ExpectWithAnyWorkers(expected, [&] { return ReplaceLuma(picture, before, after); });
    }
}

TEST(Hsv, PlacesTheHuesAndComesBack) {
  const auto hue = [](const Pixel& pixel) { return RgbToHsv(OnePixel(pixel)).planes(0)(0, 0); };
  const std::pair<Pixel, float> hues[] = {{{255, 0, 0}, 0.0f},   {{255, 255, 0}, 60.0f}, {{0, 255, 0}, 120.0f},
                                          {{0, 0, 255}, 240.0f}, {{90, 0, 90}, 300.0f},  {{77, 77, 77}, 0.0f}};
  for (const auto& [pixel, degrees] : hues) EXPECT_EQ(degrees, hue(pixel));
  EXPECT_EQ(0.0f, RgbToHsv(OnePixel({0, 0, 0})).planes(1)(0, 0));
  EXPECT_EQ(0.75f, RgbToHsv(OnePixel({200, 50, 100})).planes(1)(0, 0));

  ForPictures([](const ChannelSet& picture, int) {
    ExpectWithAnyWorkers(picture, [&] {
      const auto parts = RgbToHsv(picture).Split();
      for (const float degrees : parts[0].planes(0)) EXPECT_TRUE(degrees >= 0.0f && degrees < 360.0f) << degrees;
      return HsvToRgb(parts[0], parts[1], parts[2]);
    });
  });
}

TEST(Hsv, TakesAFullTurnForNone) {
  FloatChannelSet hue("F", 1, 1), saturation("F", 1, 1), value("F", 1, 1);
  hue.planes(0) = 360.0f;
  saturation.planes(0) = 1.0f;
  value.planes(0) = 200.0f;
  EXPECT_EQ((Pixel{200, 0, 0}), PixelAt(HsvToRgb(hue, saturation, value), 0, 0));
}

TEST(ReplaceValue, EqualsTheRoadThroughHsv) {
  std::mt19937 rng(41);
  ValueMap map;
  for (std::size_t i = 0; i < map.size(); ++i) map[i] = static_cast<float>((i * 73) % 256) * 0.99f;
  for (const auto& [height, width] : {std::pair{1, 1}, {3, 700}, {33, 40}}) {
    const ChannelSet picture = RandomPicture(height, width, rng);
    const auto replaced = [&](const FloatPlane& value) {
      const std::vector<FloatChannelSet> hsv = RgbToHsv(picture).Split();
      return HsvToRgb(hsv[0], hsv[1], FloatChannelSet("L", picture.width(), picture.height(), value));
    };
    const BytePlane bytes(RandomPlane(height, width, rng));
    const FloatPlane floats(0.37f * bytes), whole(1.0f * bytes);
    const FloatPlane mapped(EachPixel<float>([&](std::size_t v) { return map[v]; }, BrightestPlane(picture)));
    ExpectWithAnyWorkers(replaced(floats), [&] { return ReplaceValue(picture, floats); });
    ExpectWithAnyWorkers(replaced(whole), [&] { return ReplaceValue(picture, bytes); });
    ExpectWithAnyWorkers(replaced(mapped), [&] { return MapValue(picture, map); });
  }
}

TEST(Luma709, KeepsTheRoundingAndComesBack) {
  EXPECT_NEAR(54.713f, FloatLuma709(OnePixel({255, 0, 0}))(0, 0), 1e-4f);
  const FloatPlane beyondWhite(PlaneOf<float>(1, 1, [](int, int) { return 300.0f; }));
  EXPECT_EQ((Pixel{99, 255, 255}), PixelAt(WithLuma709(OnePixel({0, 255, 255}), beyondWhite), 0, 0));
  ForPictures([](const ChannelSet& picture, int) {
    ExpectWithAnyWorkers(picture, [&] { return WithLuma709(picture, FloatPlane(FloatLuma709(picture) - 0.5f)); });
  });
}

}  // namespace
}  // namespace quentara
