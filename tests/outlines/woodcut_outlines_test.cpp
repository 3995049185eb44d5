#include "outlines/woodcut_outlines.h"

#include <gtest/gtest.h>

#include "blur/blur_image.h"
#include "outlines/ink_levels.h"
#include "outlines/shadow_mask.h"
#include "outlines/thick_line_mask.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};
constexpr OutlineColor kTeal = {10.5f, 120.0f, 130.25f, OutlineColorClass::Colored};

TEST(WoodcutOutlines, DrawTheTonesInTheLightAndTheirNegativeInTheShadows) {
  const BlurSettings blur = {BlurType::Box, 2, 20, kHigh, 0.25f, 5, 10};
  const Tones tones = {170.0f, 30.0f};
  ForPictures([&](const ChannelSet& picture, int thickness) {
    std::mt19937 rng(55);
    const int height = static_cast<int>(picture.height()), width = static_cast<int>(picture.width());
    const ChannelSet source = RandomPicture(height, width, rng), outlineSource = RandomPicture(height, width, rng);
    const PointList skin = {0, height * width / 2, height * width - 1};
    for (const auto& [sensitivity, strength] : {std::pair{0.5f, 0.5f}, {0.7f, 0.2f}, {0.0f, 1.0f}, {1.0f, 0.0f}})
      for (const BlurSettings* smoothing : {&blur, static_cast<const BlurSettings*>(nullptr)}) {
        SCOPED_TRACE(testing::Message() << "sensitivity " << sensitivity << " blur " << (smoothing != nullptr));
        const int quality = smoothing != nullptr ? kHigh : kFast;
        const Ink ink = InkLevels(sensitivity, strength);
        ChannelSet positive = ToneToLevel(ink.level, skin, source);
        if (smoothing != nullptr) positive = BlurImage(blur, LumaMode, positive);
        ChannelSet negative = positive;
        for (int i = 0; i < 3; ++i)
          for (unsigned char& sample : negative.planes(i)) sample = static_cast<unsigned char>(255 - sample);
        const ChannelSet dark = InkThreshold(ink, ThickLineMask(thickness, positive, quality));
        const ChannelSet light = InkThreshold(ink, ThickLineMask(thickness, negative, quality));
        const ChannelSet lit = ShadowMask(ShadowCut(tones, 0.55f), outlineSource);
        ChannelSet mask = dark;
        for (int p = 0; p < height * width; ++p)
          if (lit.planes(0).data()[p] == 0)
            mask.planes(0).data()[p] = static_cast<unsigned char>(255 - light.planes(0).data()[p]);
        const OutlineColor& color = smoothing != nullptr ? kTeal : kBlack;
        const WoodcutOutlineSettings settings = {0.55f, sensitivity, strength, thickness, 0.7f, false, 0.25f, quality};
        const ChannelSet expected = CompositeOutlineMask(picture, mask, 0.7f, 0.25f, color);
        ExpectWithAnyWorkers(expected, [&] {
          return WoodcutOutlines(settings, color, tones, skin, smoothing, source, outlineSource, picture);
        });
      }
  });
}

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
