#include "outlines/scratchboard_outlines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numeric>

#include "blur/small_smooth.h"
#include "imageops/luma.h"
#include "imageops/median_filter.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

bool IsWhite(float value, float local, float tone, float push) {
  const float w = push * 127.5f;
  if (local > tone) return value >= local + w * (tone - local) / (255.0f - tone);
  if (local < tone) return value > local + w * (tone - local) / tone;
  return value > local;
}

// A line from (y, x) one step either way along (stepY, stepX), with white on both sides.
bool IsHair(const BytePlane& lines, int y, int x, int stepY, int stepX) {
  for (int along = -1; along <= 1; ++along)
    for (int across = -1; across <= 1; ++across)
      if (lines(y + along * stepY + across * stepX, x + along * stepX + across * stepY) != (across == 0 ? 0 : 255))
        return false;
  return true;
}

BytePlane MaskByDefinition(float tone, int style, float push, int focus, const ChannelSet& image) {
  const BytePlane values(BrightestPlane(image));
  const auto isWhite = [&](int value, int local) { return IsWhite(value, local, tone, push) ? 255 : 0; };
  const BytePlane lines(
      EachPixel(isWhite, values, style == kSmooth ? BinomialSmooth(focus, values) : MedianFilter(focus, values)));
  return PlaneOf(lines.rows(), lines.cols(), [&](int y, int x) {
    const bool inner = y >= 2 && y <= lines.rows() - 3 && x >= 2 && x <= lines.cols() - 3;
    return inner && (IsHair(lines, y, x, 1, 0) || IsHair(lines, y, x, 0, 1)) ? 255 : lines(y, x);
  });
}

float MeanByDefinition(const BytePlane& plane) {
  return std::accumulate(plane.begin(), plane.end(), 0.0f) / static_cast<float>(plane.numElements());
}

TEST(ScratchMask, EqualsItsDefinitionOnRandomPictures) {
  ForPictures([](const ChannelSet& image, int focus) {
    EXPECT_EQ("", StopsAtEachOf(1, [&] { ScratchMask(100.0f, kRough, 0.4f, focus, image); }));
    for (const int style : {kRough, kSmooth})
      for (const float tone : {0.0f, 100.0f, 131.7f, 255.0f})
        for (const float push : {0.0f, 0.013f, 0.4f, 12.0f}) {
          SCOPED_TRACE(testing::Message() << "style " << style << " tone " << tone << " push " << push);
          ExpectWithAnyWorkers(Grey(MaskByDefinition(tone, style, push, focus, image)),
                               [&] { return ScratchMask(tone, style, push, focus, image); });
        }
  });
}

TEST(ScratchboardOutlines, FollowTheDeviationOfTheFrame) {
  constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};
  std::mt19937 rng(56);
  // The largest one has sums beyond the whole numbers that single precision holds.
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 9}, {17, 23}, {330, 500}})
    for (const float detail : {0.0f, 3.1f, 4.75f, 5.0f}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " detail " << detail);
      const ChannelSet source = RandomPicture(height, width, rng), picture = RandomPicture(height, width, rng);
      const BytePlane luma(LumaPlane601(source));
      const auto distance = [mean = MeanByDefinition(luma)](float sample) { return std::abs(sample - mean) + 0.5f; };
      const auto p = static_cast<float>(std::pow(10.0, static_cast<double>((5.0f - detail) / 5.0f)));
      const float push = MeanByDefinition(EachPixel(distance, luma)) * ((p - 1.0f) * 10.0f / 9.0f / 200.0f);
      const ChannelSet mask = Grey(MaskByDefinition(0.55f * 255.0f, kRough, push, 3, source));
      const ScratchboardOutlineSettings settings = {0.55f, kRough, detail, 3, 0.5f, false, 0.1f};
      const ChannelSet expected = CompositeOutlineMask(picture, mask, 0.5f, 0.1f, kBlack);
      ExpectWithAnyWorkers(expected, [&] { return ScratchboardOutlines(settings, kBlack, source, picture); });
    }
}

}  // namespace
}  // namespace quentara
