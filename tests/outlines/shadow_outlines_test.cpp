#include "outlines/shadow_outlines.h"

#include <gtest/gtest.h>

#include "outlines/shadow_mask.h"
#include "support/planes.h"

namespace quentara {
namespace {

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
  ChannelSet source("RGB", 4, 1), picture("RGB", 4, 1);
  source.planes(0) = 10, 91, 10, 90;
  source.planes(1) = 90, 10, 10, 255;
  source.planes(2) = 10, 10, 91, 0;
  for (int i = 0; i < 3; ++i) picture.planes(i) = 77;
  BytePlane expected(1, 4);
  expected = 0, 77, 77, 77;
  const ShadowOutlineSettings settings = {0.5f, 0.0f, false, 0.0f};
  const ChannelSet inked = ShadowOutlines(settings, MakeOutlineColor({0, 0, 0}), {100.0f, 10.0f}, source, picture);
  EXPECT_EQ("", FirstDifference(expected, inked.planes(2)));
}

}  // namespace
}  // namespace quentara
