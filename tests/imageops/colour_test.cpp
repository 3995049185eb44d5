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
  const ChannelSet picture = RandomPicture(40, 61, rng), grey = Grey(picture.planes(2));
  const auto each = [&](const auto& f) {
    return EachPixel(f, picture.planes(0), picture.planes(1), picture.planes(2));
  };
  const BytePlane hd(each([](int r, int g, int b) { return ToByte(0.2126f * r + 0.7152f * g + 0.0722f * b); }));
  const BytePlane sd(each([](int r, int g, int b) { return ToByte(0.299f * r + 0.587f * g + 0.114f * b); }));
  const BytePlane brightest(each([](int r, int g, int b) { return std::max({r, g, b}); }));
  ForInstructionSets([&] {
    EXPECT_EQ("", FirstDifference(hd, LumaPlane709(picture)));
    EXPECT_EQ("", FirstDifference(sd, LumaPlane601(picture)));
    EXPECT_EQ("", FirstDifference(brightest, BrightestPlane(picture)));
    EXPECT_EQ("", FirstDifference(Grey(hd), LumaImage709(picture)));
    EXPECT_EQ("", FirstDifference(Grey(sd), LumaImage601(picture)));
    EXPECT_EQ("", FirstDifference(grey, LumaImage601(grey)));
    EXPECT_EQ("", FirstDifference(grey.planes(0), LumaPlane709(grey)));
  });
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

std::array<float, 3> HsvByDefinition(float r, float g, float b) {
  const float most = std::max({r, g, b}), least = std::min({r, g, b}), delta = (most - least) / 255.0f;
  if (most == least) return {0.0f, 0.0f, most};
  const float sixths = r == most   ? (g - b) / 255.0f / delta
                       : g == most ? 2.0f + (b - r) / 255.0f / delta
                                   : 4.0f + (r - g) / 255.0f / delta;
  return {sixths * 60.0f < 0.0f ? sixths * 60.0f + 360.0f : sixths * 60.0f, (most - least) / most, most};
}

Pixel RgbByDefinition(float hue, float s, float value) {
  const float sixths = (hue == 360.0f ? 0.0f : hue) / 60.0f, f = sixths - std::floor(sixths);
  const int v = ToByte(value), p = ToByte(value * (1.0f - s)), q = ToByte(value * (1.0f - s * f)),
            t = ToByte(value * (1.0f - s * (1.0f - f)));
  const Pixel sextants[] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};
  return sextants[static_cast<int>(sixths)];
}

FloatChannelSet Floats(const FloatPlane& plane) {
  return FloatChannelSet("L", static_cast<std::uint32_t>(plane.cols()), static_cast<std::uint32_t>(plane.rows()),
                         plane);
}

TEST(Hsv, EqualsItsDefinitionsOnEveryInstructionSet) {
  std::mt19937 rng(4);
  for (const int step : {1, 85}) {  // few values make greys and ties of two channels
    const ChannelSet picture =
        Rgb([&](int) { return EachPixel([&](int v) { return v * step; }, RandomPlane(7, 229, rng, 0, 255 / step)); });
    const auto share = [&] { return static_cast<float>(rng() % 1001) / 1000.0f; };
    const auto hueAt = [&](int y, int x) { return y == 0 ? static_cast<float>(x % 7) * 60.0f : 359.9999f * share(); };
    const FloatPlane hue(PlaneOf<float>(7, 229, hueAt));
    const FloatPlane saturation(PlaneOf<float>(7, 229, [&](int, int) { return share(); }));
    const FloatPlane value(PlaneOf<float>(7, 229, [&](int, int) { return 255.0f * share(); }));
    ForInstructionSets([&] {
      const std::vector<FloatChannelSet> parts = RgbToHsv(picture).Split();
      for (std::size_t i = 0; i < 3; ++i) {
        const auto part = [&](float r, float g, float b) { return HsvByDefinition(r, g, b)[i]; };
        const FloatPlane expected(EachPixel<float>(part, picture.planes(0), picture.planes(1), picture.planes(2)));
        EXPECT_EQ("", FirstDifference(expected, parts[i].planes(0)));
      }
      EXPECT_EQ("", FirstDifference(picture, HsvToRgb(parts[0], parts[1], parts[2])));
      const ChannelSet expected = Rgb([&](std::size_t i) {
        return EachPixel([&](float h, float s, float v) { return RgbByDefinition(h, s, v)[i]; }, hue, saturation,
                         value);
      });
      EXPECT_EQ("", FirstDifference(expected, HsvToRgb(Floats(hue), Floats(saturation), Floats(value))));
    });
  }
}

TEST(ReplaceValue, EqualsTheRoadThroughHsv) {
  std::mt19937 rng(41);
  ValueMap map;
  for (std::size_t i = 0; i < map.size(); ++i) map[i] = static_cast<float>((i * 73) % 256) * 0.99f;
  for (const auto& [height, width] : {std::pair{1, 1}, {3, 700}, {33, 40}}) {
    const ChannelSet picture = RandomPicture(height, width, rng);
    const auto replaced = [&](const FloatPlane& value) {
      const std::vector<FloatChannelSet> hsv = RgbToHsv(picture).Split();
      return HsvToRgb(hsv[0], hsv[1], Floats(value));
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
