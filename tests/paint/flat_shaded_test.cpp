#include "paint/flat_shaded.h"

#include <gtest/gtest.h>

#include "imageops/luma.h"
#include "imageops/window_definitions.h"
#include "paint/luma_strength.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane FlattenedByDefinition(const FlatShadedSettings& settings, const BytePlane& luma) {
  BytePlane flat(luma.copy());
  for (int i = 0; i < 8; ++i) {
    const LineDirection direction = i % 2 == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
    const int radius = settings.flatness + i;
    const Reach reach = settings.quality == kHigh ? Square(radius) : Line(radius, direction);
    flat.reference(RangeMedianByDefinition(reach, luma, flat, settings.simplicity + i));
  }
  return flat;
}

TEST(FlatShaded, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 23}, {23, 1}, {150, 12}})
    for (const int quality : {kFast, kHigh})
      for (const auto& [flatness, simplicity] : {std::pair{0, 0}, {2, 20}, {100, 60}}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " quality " << quality << " " << flatness);
        const FlatShadedSettings settings{flatness, simplicity, 1.0f, quality};
        const ChannelSet image = RandomPicture(height, width, rng);
        const BytePlane luma(LumaPlane709(image));
        ExpectWithAnyWorkers(ReplaceLuma(image, luma, FlattenedByDefinition(settings, luma)),
                             [&] { return FlatShaded(settings, image); });
      }
}

TEST(FlatShaded, StopsAfterAnyPass) {
  std::mt19937 rng(3);
  const ChannelSet image = RandomPicture(40, 9, rng);
  for (const int quality : {kFast, kHigh})
    EXPECT_EQ("", StopsAtEachOf(8, [&] { FlatShaded({1, 20, 1.0f, quality}, image); }));
}

TEST(AtStrength, MixesBelowOneAndExaggeratesAboveIt) {
  BytePlane luma(1, 4), painted(1, 4);
  luma = 100, 100, 200, 30;
  painted = 120, 160, 120, 31;
  const auto expectAt = [&](float strength, const std::array<int, 4>& expected) {
    const BytePlane result(AtStrength(strength, luma, painted));
    for (int x = 0; x < 4; ++x) EXPECT_EQ(expected[static_cast<std::size_t>(x)], result(0, x)) << strength;
  };
  expectAt(0.0f, {100, 100, 200, 30});
  expectAt(0.5f, {110, 130, 160, 31});
  expectAt(1.0f, {120, 160, 120, 31});
  expectAt(5.0f, {200, 255, 0, 35});
}

}  // namespace
}  // namespace quentara
