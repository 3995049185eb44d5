// The outlines of flat ink, Comic, Woodcut and Shadow, and the levels at which they cut.
#include <gtest/gtest.h>

#include <cmath>

#include "blur/blur_image.h"
#include "imageops/luma.h"
#include "outlines/comic_outlines.h"
#include "outlines/ink_levels.h"
#include "outlines/shadow_mask.h"
#include "outlines/shadow_outlines.h"
#include "outlines/woodcut_outlines.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};

TEST(InkLevels, MeetsItsWorkedNumbers) {
  for (const auto& [sensitivity, level] :
       {std::pair{0.0f, 254.0f}, {0.25f, 212.5f}, {0.5f, 170.0f}, {0.75f, 85.0f}, {1.0f, 0.0f}})
    EXPECT_EQ(level, InkLevels(sensitivity, 0.0f).level);
  EXPECT_EQ(135.0f, std::floor(InkLevels(0.6f, 0.0f).level));  // a little below 136 in single precision
  for (const auto& [strength, exponent] : {std::pair{0.0f, 1.0f}, {0.5f, 10.0f}, {1.0f, 100.0f}})
    EXPECT_EQ(exponent, InkLevels(0.0f, strength).exponent);
}

ChannelSet BentByDefinition(float level, float median, const ChannelSet& picture) {
  const auto log = [](float x) { return static_cast<float>(std::log(static_cast<double>(x))); };
  const double g = log((level < 1e-8f ? 1e-8f : level) / 255.0f) / (log(median) - log(255.0f));
  const auto bend = [&](int sample) { return std::trunc(255.0 * std::pow(sample / 255.0, g) + 0.5); };
  return Rgb([&](int i) { return EachPixel(bend, picture.planes(i)); });
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
  const BytePlane ramp(PlaneOf(1, 256, [](int, int x) { return x; }));
  for (const Ink& ink : {Ink{0.0f, 1.0f}, Ink{135.99999f, 25.0f}, Ink{170.0f, 1.0f}, Ink{254.0f, 100.0f}}) {
    SCOPED_TRACE(ink.level);
    const auto cut = [&](int x) {
      const double power = 255.0 * std::pow(x, static_cast<double>(ink.exponent)) / std::pow(255.0, ink.exponent);
      const double s = std::trunc(power + 0.5) / 255.0;
      const double shade = std::trunc(255.0 * (3.0 * s * s - 2.0 * s * s * s) + 0.5);
      return shade > std::trunc(ink.level) + 0.5 ? 255 : 0;
    };
    ExpectWithAnyWorkers(Grey(EachPixel(cut, ramp)), [&] { return InkThreshold(ink, Grey(ramp)); });
  }
  EXPECT_EQ(0, InkThreshold({0.0f, 1.0f}, Grey(ramp)).planes(0)(0, 0));
  EXPECT_EQ(255, InkThreshold({254.0f, 1.0f}, Grey(ramp)).planes(0)(0, 255));
}

ChannelSet Columns(int height, int width, int (*sampleAt)(int x)) {
  return Rgb([&](int) { return PlaneOf(height, width, [&](int, int x) { return sampleAt(x); }); });
}

// No power carries 255 to another level.
TEST(ToneToLevel, LeavesAFrameOfWhiteTonesAlone) {
  const ChannelSet white = Columns(3, 5, [](int x) { return x == 4 ? 80 : 255; });
  EXPECT_EQ("", FirstDifference(white, ToneToLevel(85.0f, {0}, white)));
}

// A grey line on white paper, under another picture.
TEST(ComicOutlines, InkADarkLineAndNothingElse) {
  const ChannelSet source = Columns(15, 21, [](int x) { return x >= 9 && x <= 11 ? 120 : 200; });
  const ChannelSet picture = Columns(15, 21, [](int) { return 77; });
  const ChannelSet inked = ComicOutlines({0.6f, 0.5f, 3, 0.0f, 0.25f, kFast}, kBlack, {}, nullptr, source, picture);
  EXPECT_EQ("", FirstDifference(Columns(15, 21, [](int x) { return x >= 9 && x <= 11 ? 19 : 77; }), inked));
}

// A bright line through shadow stays free of ink, a dark one through light is inked, the flat ground of each is not.
TEST(WoodcutOutlines, CutLightLinesIntoSolidShadows) {
  const ChannelSet source = Columns(30, 40, [](int x) {
    return x == 10 ? 40 : x < 20 ? 220 : x >= 34 ? 118 : x == 30 ? 115 : 30;
  });
  const ChannelSet picture = Columns(30, 40, [](int) { return 200; });
  const WoodcutOutlineSettings settings = {0.5f, 0.5f, 1.0f, 3, 0.0f, false, 0.0f, kFast};
  const ChannelSet cut = WoodcutOutlines(settings, kBlack, {150.0f, 30.0f}, {0}, nullptr, source, source, picture);
  for (const int y : {0, 15, 29})
    for (const auto& [x, expected] : {std::pair{4, 200}, {10, 0}, {24, 0}, {30, 200}, {38, 0}})
      EXPECT_EQ(expected, cut.planes(0)(y, x)) << y << " " << x;
}

TEST(ShadowCut, LiesRelativeToTheTonesWithinItsBounds) {
  EXPECT_EQ(40.5f, ShadowCut({100.0f, 10.0f}, 0.0f));
  EXPECT_EQ(90.5f, ShadowCut({100.0f, 10.0f}, 0.5f));
  EXPECT_EQ(85.5f, ShadowCut({100.0f, 0.0f}, 0.5f));  // a spread of 0 counts as 15
  EXPECT_EQ(92.5f, ShadowCut({100.0f, 7.25f}, 0.5f));
  EXPECT_EQ(1.5f, ShadowCut({20.0f, 3.25f}, 0.0f));
  EXPECT_EQ(253.5f, ShadowCut({200.0f, 30.0f}, 1.0f));
}

// The brightest channel decides: at the cut or below, the picture is inked.
TEST(ShadowOutlines, CoverWhatIsNotAboveTheCut) {
  ChannelSet source("RGB", 4, 1);
  source.planes(0) = 10, 91, 10, 90;
  source.planes(1) = 90, 10, 10, 255;
  source.planes(2) = 10, 10, 91, 0;
  const ChannelSet picture = Columns(1, 4, [](int) { return 77; });
  const ChannelSet mask = Grey(PlaneOf(1, 4, [](int, int x) { return x == 0 ? 0 : 255; }));
  const ChannelSet inked = ShadowOutlines({0.5f, 0.4f, false, 0.25f}, kBlack, {100.0f, 10.0f}, source, picture);
  EXPECT_EQ("", FirstDifference(CompositeOutlineMask(picture, mask, 0.4f, 0.25f, kBlack), inked));
}

}  // namespace
}  // namespace quentara
