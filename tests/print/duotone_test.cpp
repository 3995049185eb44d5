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

}  // namespace
}  // namespace quentara
