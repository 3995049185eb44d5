#include "outlines/woodcut_outlines.h"

#include <gtest/gtest.h>

namespace quentara {
namespace {

constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};

// A bright line through shadow stays free of ink, a dark one through light is inked, the flat ground of each is not.
TEST(WoodcutOutlines, CutLightLinesIntoSolidShadows) {
  ChannelSet source("RGB", 40, 30), picture("RGB", 40, 30);
  for (int i = 0; i < 3; ++i) {
    picture.planes(i) = 200;
    for (int y = 0; y < 30; ++y)
      for (int x = 0; x < 40; ++x)
        source.planes(i)(y, x) = static_cast<unsigned char>(x < 20 ? (x == 10 ? 40 : 220) : (x == 30 ? 115 : 30));
  }
  const WoodcutOutlineSettings settings = {0.5f, 0.5f, 1.0f, 3, 0.0f, false, 0.0f, kFast};
  const ChannelSet cut = WoodcutOutlines(settings, kBlack, {150.0f, 30.0f}, {0}, nullptr, source, source, picture);
  for (const int y : {0, 15, 29}) {
    EXPECT_EQ(200, cut.planes(0)(y, 4));
    EXPECT_EQ(0, cut.planes(0)(y, 10));
    EXPECT_EQ(200, cut.planes(0)(y, 30));
    EXPECT_EQ(0, cut.planes(0)(y, 37));
  }
}

}  // namespace
}  // namespace quentara
