#include "outlines/comic_outlines.h"

#include <gtest/gtest.h>

#include "blur/blur_image.h"
#include "outlines/ink_levels.h"
#include "outlines/thick_line_mask.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

TEST(ComicOutlines, AreTheirStepsWithAnyWorkers) {
  ForPictures([](const ChannelSet& source, int thickness) {
    ChannelSet picture = source;
    picture.planes(1) = 90;
    const PointList skin = {0, static_cast<int>(source.pixelCount()) - 1};
    const BlurSettings blur{BlurType::Gaussian, 2, 40, kHigh, 0.25f, 5, 10};
    for (const BlurSettings* const used : {static_cast<const BlurSettings*>(nullptr), &blur})
      for (const Color& color : {Color{0.0f, 0.0f, 0.0f}, {0.1f, 0.6f, 0.9f}})
        for (const auto& [antialias, transparency, quality] :
             {std::tuple{0.0f, 0.0f, kFast}, {0.6f, 0.25f, kHigh}, {1.0f, 0.0f, kFast}}) {
          SCOPED_TRACE(testing::Message() << "antialias " << antialias << " blue " << color.blue);
          const ComicOutlineSettings settings{0.6f, 0.7f, thickness, antialias, transparency, quality};
          const OutlineColor outline = MakeOutlineColor(color);
          const Ink ink = InkLevels(0.6f, 0.7f);
          ChannelSet tones = ToneToLevel(ink.level, skin, source);
          if (used != nullptr) tones = BlurImage(blur, LumaMode, tones);
          const ChannelSet mask = InkThreshold(ink, ThickLineMask(thickness, tones, quality));
          ExpectWithAnyWorkers(CompositeOutlineMask(picture, mask, antialias, transparency, outline),
                               [&] { return ComicOutlines(settings, outline, skin, used, source, picture); });
        }
  });
}

// A thin grey line on white paper, under another picture.
TEST(ComicOutlines, InkADarkLineAndNothingElse) {
  ChannelSet source("RGB", 21, 15), picture = source;
  for (int i = 0; i < 3; ++i) {
    source.planes(i) = 200;
    source.planes(i)(blitz::Range::all(), 10) = 120;
    picture.planes(i) = 77;
  }
  const ChannelSet inked =
      ComicOutlines({0.6f, 0.5f, 3, 0.0f, 0.0f, kFast}, MakeOutlineColor({0, 0, 0}), {}, nullptr, source, picture);
  for (int y = 0; y < 15; ++y)
    for (int x = 0; x < 21; ++x) ASSERT_EQ(x == 10 ? 0 : 77, inked.planes(1)(y, x)) << y << " " << x;
}

}  // namespace
}  // namespace quentara
