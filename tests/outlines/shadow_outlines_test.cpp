#include "outlines/shadow_outlines.h"

#include <gtest/gtest.h>

#include <cmath>

#include "outlines/shadow_mask.h"
#include "support/expect_styles.h"

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

TEST(ShadowOutlines, CoverWhatIsNotAboveTheCut) {
  constexpr OutlineColor kRust = {180.0f, 60.5f, 20.0f, OutlineColorClass::Colored};
  ForPictures([&](const ChannelSet& source, int) {
    for (const float threshold : {0.0f, 0.43f, 1.0f})
      for (const Tones& tones : {Tones{140.0f, 21.7f}, {100.0f, 0.0f}, {250.0f, 40.0f}}) {
        const float spread = tones.spread == 0.0f ? 15.0f : tones.spread;
        float cut = std::floor(tones.median + (threshold * 10.0f - 6.0f) * spread) + 0.5f;
        if (cut < 1.5f) cut = 1.5f;
        if (cut > 253.5f) cut = 253.5f;
        ChannelSet mask("L", source.width(), source.height());
        for (int p = 0; p < static_cast<int>(source.pixelCount()); ++p) {
          int brightest = 0;
          for (int i = 0; i < 3; ++i) brightest = std::max<int>(brightest, source.planes(i).data()[p]);
          mask.planes(0).data()[p] = static_cast<float>(brightest) > cut ? 255 : 0;
        }
        ChannelSet picture = source;
        picture.planes(1) = 77;
        const ShadowOutlineSettings settings = {threshold, 0.6f, false, 0.2f};
        const ChannelSet expected = CompositeOutlineMask(picture, mask, 0.6f, 0.2f, kRust);
        ExpectWithAnyWorkers(expected, [&] { return ShadowOutlines(settings, kRust, tones, source, picture); });
      }
  });
}

}  // namespace
}  // namespace quentara
