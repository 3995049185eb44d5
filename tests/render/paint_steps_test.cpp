#include "render/paint_steps.h"

#include <gtest/gtest.h>

#include "paint/airbrush.h"
#include "paint/bristle.h"
#include "paint/crackle.h"
#include "paint/droplet.h"
#include "paint/gouache.h"
#include "paint/poster_paint.h"
#include "support/planes.h"

namespace quentara {
namespace {

// The values of the stages are those that the parameters' ranges stand for, at their defaults and where they matter.
TEST(PaintInStyle, DerivesTheValuesOfEachStage) {
  std::mt19937 rng(1);
  const ChannelSet picture = RandomPicture(20, 24, rng);
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

}  // namespace
}  // namespace quentara
