// The stages that look at the brightest channel alone.
#include <gtest/gtest.h>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "print/duotone.h"
#include "print/lighter_value.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

// A flat picture of the lightest colour, faded to the darkest by the brightest channels.
TEST(DuotoneShading, FadesTheLightestColorToTheDarkest) {
  const DuotoneSettings settings = {{0.9f, 1.0f, 0.333f}, {0.05f, 0.7f, 0.111f}};
  const float light[] = {230.0f, 255.0f, 85.0f};  // 229.5 rounds up
  const float dark[] = {0.05f * 255.0f, 0.7f * 255.0f, 0.111f * 255.0f};
  ForPictures([&](const ChannelSet& picture, int) {
    const ChannelSet expected = Rgb([&](int i) {
      const auto fade = [&](float v) { return light[i] * (v / 255.0f) + dark[i] * (1.0f - v / 255.0f) + 0.5f; };
      return EachPixel(fade, BrightestPlane(picture));
    });
    ExpectWithAnyWorkers(expected, [&] { return DuotoneShading(settings, picture); });
  });
}

TEST(LighterValue, EqualsItsDefinitionOnRandomPictures) {
  ForPictures([](const ChannelSet& picture, int) {
    for (const float lighter : {0.01f, 0.4f, 1.0f}) {
      const auto lift = [&](float v) {
        const float t = 1.0f - v / 255.0f;
        return (v * t + 255.0f * (1.0f - t)) * lighter + v * (1.0f - lighter);
      };
      const ChannelSet expected = ReplaceValue(picture, EachPixel<float>(lift, BrightestPlane(picture)));
      ExpectWithAnyWorkers(expected, [&] { return LighterValue(lighter, picture); });
    }
  });
}

}  // namespace
}  // namespace quentara
