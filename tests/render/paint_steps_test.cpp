// The steps that paint and that brighten.

#include "render/paint_steps.h"

#include <gtest/gtest.h>

#include "imageops/lighter_tone.h"
#include "outlines/compositing.h"
#include "paint/airbrush.h"
#include "paint/bristle.h"
#include "paint/crackle.h"
#include "paint/droplet.h"
#include "paint/flat_detailed.h"
#include "paint/gouache.h"
#include "paint/poster_paint.h"
#include "print/lighter_value.h"
#include "render/lighter_step.h"
#include "support/planes.h"

namespace quentara {
namespace {

ChannelSet Picture() {
  std::mt19937 rng(4);
  return RandomPicture(18, 23, rng);
}

// The values of the stages are those that the parameters' ranges stand for, at their defaults and where they matter.
TEST(PaintInStyle, DerivesTheValuesOfEachStage) {
  const ChannelSet picture = Picture();
  const auto painted = [&](auto RenderSettings::*record, const auto& values) {
    RenderSettings settings;
    settings.*record = &values;
    return PaintInStyle(settings, {}, picture);
  };
  EXPECT_EQ("", FirstDifference(picture, PaintInStyle(RenderSettings(), {}, picture)));
  for (const auto& [lightMix, mix] : {std::pair{0.4f, 0.0f}, {0.6f, 1.0f}, {0.0f, -2.0f}, {1.0f, 3.0f}})
    EXPECT_EQ("", FirstDifference(AirbrushStyle(3, mix, -1.5f, picture),
                                  painted(&RenderSettings::airbrush, AirbrushSettings{3, lightMix, 1.5f})));
  for (const int quality : {kFast, kHigh}) {
    EXPECT_EQ("", FirstDifference(BristleStyle(51.0f, 3, 1.5f, quality, picture),
                                  painted(&RenderSettings::bristle, BristleSettings{5.0f, 3, 0.5f, quality})));
    EXPECT_EQ("", FirstDifference(GouacheStyle(4, 1.75f, 3, 1.25f, quality, picture),
                                  painted(&RenderSettings::gouache, GouacheSettings{2, 0.75f, 3, 0.25f, quality})));
  }
  for (const auto& [flatness, separation, radius] : {std::array{0, 1, 1}, {0, 2, 0}, {2, 1, 2}})
    EXPECT_EQ("", FirstDifference(CrackleStyle(radius, 10, separation, 1.0f, picture),
                                  painted(&RenderSettings::crackle, CrackleSettings{flatness, 10, separation, 1.0f})));
  EXPECT_EQ("", FirstDifference(DropletStyle(2, 0.85f, 4, picture),
                                painted(&RenderSettings::droplet, DropletSettings{2, 0.85f})));
  EXPECT_EQ("",
            FirstDifference(PosterPaintStyle(4, 6, 0.25f, 0.85f, 3, 0.5f, picture),
                            painted(&RenderSettings::posterPaint, PosterPaintSettings{4, 6, 0.25f, 0.85f, 3, 0.5f})));
}

ChannelSet Lighter(float lighter, const ChannelSet& picture, RenderSettings settings = {}) {
  settings.lighter = lighter;
  ChannelSet result = picture;
  ApplyLighter(settings, result);
  return result;
}

ChannelSet FullToneMixed(float weight) {
  ChannelSet image = LighterTone(1.5f, Picture());
  MixImages(Picture(), image, weight);
  return image;
}

TEST(Lighter, FirstTypeMixesUpToTwoThirdsAndBrightensBeyond) {
  const ChannelSet picture = Picture();
  EXPECT_EQ("", FirstDifference(picture, Lighter(0.0f, picture)));
  EXPECT_EQ("", FirstDifference(FullToneMixed((1.0f / 3.0f) / 0.6666667f), Lighter(1.0f / 3.0f, picture)));
  EXPECT_EQ("", FirstDifference(LighterTone(1.5f, picture), Lighter(0.6666667f, picture)));
  const float strongest = 2.0f - (0.5f + (1.0f - 0.6666667f) / 0.6666667f);
  EXPECT_NEAR(1.0f, strongest, 1e-6f);
  EXPECT_EQ("", FirstDifference(LighterTone(strongest, picture), Lighter(1.0f, picture)));
}

TEST(Lighter, SecondTypeRaisesTheValue) {
  RenderSettings settings;
  settings.lighterSecond = true;
  EXPECT_EQ("", FirstDifference(LighterValue(0.7f, Picture()), Lighter(0.7f, Picture(), settings)));
}

TEST(Lighter, KeepsOutOfTintedPicturesAndOfFlatDetailed) {
  const ChannelSet picture = Picture();
  RenderSettings tinted, detailed;
  const ShadowOutlineSettings tinting = {0.5f, 1.0f, true, 0.0f};
  tinted.shadowOutlines = &tinting;
  EXPECT_EQ("", FirstDifference(picture, Lighter(0.7f, picture, tinted)));

  FlatDetailedSettings flat = {1.0f, 0.5f, true};
  detailed.style = Style::FlatDetailed;
  detailed.flatDetailed = &flat;
  EXPECT_EQ("", FirstDifference(picture, Lighter(0.7f, picture, detailed)));
  flat.strength = 0.0f;
  EXPECT_NE("", FirstDifference(picture, Lighter(0.7f, picture, detailed)));
  EXPECT_EQ("", FirstDifference(picture, PaintInStyle(detailed, {}, picture)));
}

TEST(Lighter, FlatDetailedDarkensATone) {
  const ChannelSet picture = Picture();
  const FlatDetailedSettings detailed = {0.8f, 0.75f, false};
  const PointList skin = {0, 5, 9};
  const ChannelSet flat = FlatDetailed(skin, 0.5f, false, picture);
  for (const auto& [lighter, tone] : {std::pair{0.0f, FullToneMixed(0.5f)},
                                      {0.25f, FullToneMixed(0.75f)},
                                      {0.5f, LighterTone(1.5f, picture)},
                                      {0.75f, LighterTone(1.25f, picture)}}) {
    RenderSettings settings;
    settings.style = Style::FlatDetailed;
    settings.flatDetailed = &detailed;
    settings.lighter = lighter;
    EXPECT_EQ("", FirstDifference(DarkenByMask(tone, flat, 0.4f), PaintInStyle(settings, skin, picture)));
  }
}

}  // namespace
}  // namespace quentara
