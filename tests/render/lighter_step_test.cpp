#include "render/lighter_step.h"

#include <gtest/gtest.h>

#include "imageops/lighter_tone.h"
#include "outlines/compositing.h"
#include "paint/flat_detailed.h"
#include "print/lighter_value.h"
#include "render/paint_steps.h"
#include "support/planes.h"

namespace quentara {
namespace {

ChannelSet Picture() {
  std::mt19937 rng(4);
  return RandomPicture(18, 23, rng);
}

ChannelSet Mixed(const ChannelSet& base, ChannelSet image, float weight) {
  MixImages(base, image, weight);
  return image;
}

ChannelSet Lighter(const RenderSettings& settings) {
  ChannelSet picture = Picture();
  ApplyLighter(settings, picture);
  return picture;
}

TEST(Lighter, FirstTypeMixesUpToTwoThirdsAndBrightensBeyond) {
  const ChannelSet picture = Picture(), full = LighterTone(1.5f, picture);
  RenderSettings settings;
  EXPECT_EQ("", FirstDifference(picture, Lighter(settings)));
  settings.lighter = 1.0f / 3.0f;
  EXPECT_EQ("", FirstDifference(Mixed(picture, full, (1.0f / 3.0f) / 0.6666667f), Lighter(settings)));
  settings.lighter = 0.6666667f;
  EXPECT_EQ("", FirstDifference(full, Lighter(settings)));
  settings.lighter = 1.0f;  // 2 - (0.5 + 0.5)
  const float strongest = 2.0f - (0.5f + (1.0f - 0.6666667f) / 0.6666667f);
  EXPECT_NEAR(1.0f, strongest, 1e-6f);
  EXPECT_EQ("", FirstDifference(LighterTone(strongest, picture), Lighter(settings)));
}

TEST(Lighter, SecondTypeRaisesTheValue) {
  RenderSettings settings;
  settings.lighter = 0.7f;
  settings.lighterSecond = true;
  EXPECT_EQ("", FirstDifference(LighterValue(0.7f, Picture()), Lighter(settings)));
}

TEST(Lighter, KeepsOutOfTintedPicturesAndOfFlatDetailed) {
  RenderSettings settings;
  settings.lighter = 0.7f;
  const ShadowOutlineSettings tinting = {0.5f, 1.0f, true, 0.0f};
  settings.shadowOutlines = &tinting;
  EXPECT_EQ("", FirstDifference(Picture(), Lighter(settings)));
  settings.shadowOutlines = nullptr;

  FlatDetailedSettings detailed = {1.0f, 0.5f, true};
  settings.style = Style::FlatDetailed;
  settings.flatDetailed = &detailed;
  EXPECT_EQ("", FirstDifference(Picture(), Lighter(settings)));
  detailed.strength = 0.0f;
  EXPECT_NE("", FirstDifference(Picture(), Lighter(settings)));
  EXPECT_EQ("", FirstDifference(Picture(), PaintInStyle(settings, {}, Picture())));
}

TEST(Lighter, FlatDetailedDarkensATone) {
  const ChannelSet picture = Picture();
  const std::pair<float, ChannelSet> tones[] = {{0.0f, Mixed(picture, LighterTone(1.5f, picture), 0.5f)},
                                                {0.25f, Mixed(picture, LighterTone(1.5f, picture), 0.75f)},
                                                {0.5f, LighterTone(1.5f, picture)},
                                                {0.75f, LighterTone(1.25f, picture)}};
  for (const auto& [lighter, tone] : tones) {
    RenderSettings settings;
    const FlatDetailedSettings detailed = {0.8f, 0.75f, false};
    settings.style = Style::FlatDetailed;
    settings.flatDetailed = &detailed;
    settings.lighter = lighter;
    const PointList skin = {0, 5, 9};
    const ChannelSet flat = FlatDetailed(skin, 0.5f, false, picture);
    EXPECT_EQ("", FirstDifference(DarkenByMask(tone, flat, 0.4f), PaintInStyle(settings, skin, picture)));
  }
}

}  // namespace
}  // namespace quentara
