#include "print/duotone.h"

#include <gtest/gtest.h>

#include "imageops/luma.h"
#include "outlines/compositing.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

// A flat picture of the lightest colour, faded to the darkest by the brightest channels.
TEST(DuotoneShading, FadesTheLightestColorToTheDarkest) {
  const DuotoneSettings settings = {{0.9f, 1.0f, 0.333f}, {0.05f, 0.7f, 0.111f}};
  const int light[] = {230, 255, 85};  // 229.5 rounds up
  const float dark[] = {0.05f * 255.0f, 0.7f * 255.0f, 0.111f * 255.0f};
  ForPictures([&](const ChannelSet& picture, int) {
    ChannelSet expected = picture;
    for (int i = 0; i < 3; ++i) {
      expected.planes(i) = static_cast<unsigned char>(light[i]);
      expected.planes(i).reference(FadePlaneToValue(expected.planes(i), dark[i], BrightestPlane(picture)));
    }
    ExpectWithAnyWorkers(expected, [&] { return DuotoneShading(settings, picture); });
  });
}

TEST(DuotoneShading, FollowsTheBrightestChannel) {
  ChannelSet picture("RGB", 4, 1);
  picture.planes(0) = 0, 0, 10, 40;
  picture.planes(1) = 0, 0, 128, 50;
  picture.planes(2) = 0, 255, 3, 60;
  const ChannelSet grey = DuotoneShading({{1.0f, 1.0f, 1.0f}, {0.0f, 0.0f, 0.0f}}, picture);
  const ChannelSet gold = DuotoneShading({{1.0f, 0.8f, 0.25f}, {0.1f, 0.0f, 0.3f}}, picture);
  const int brightest[] = {0, 255, 128, 60};
  const int gold0[][3] = {{26, 0, 77}, {255, 204, 64}};  // 25.5, 0, 76.5 and 255, 204, 63.75
  for (int i = 0; i < 3; ++i) {
    for (int x = 0; x < 4; ++x) EXPECT_EQ(brightest[x], grey.planes(i)(0, x));
    for (int x = 0; x < 2; ++x) EXPECT_EQ(gold0[x][i], gold.planes(i)(0, x));
  }
}

}  // namespace
}  // namespace quentara
