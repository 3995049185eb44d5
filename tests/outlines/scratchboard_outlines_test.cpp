#include "outlines/scratchboard_outlines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "blur/small_smooth.h"
#include "imageops/luma.h"
#include "imageops/median_filter.h"
#include "support/expect_styles.h"

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
  const BytePlane local(style == kSmooth ? BinomialSmooth(focus, values) : MedianFilter(focus, values));
  BytePlane lines(values.rows(), values.cols());
  for (int p = 0; p < static_cast<int>(lines.numElements()); ++p)
    lines.data()[p] = IsWhite(values.data()[p], local.data()[p], tone, push) ? 255 : 0;
  BytePlane mask(lines.copy());
  for (int y = 2; y <= lines.rows() - 3; ++y)
    for (int x = 2; x <= lines.cols() - 3; ++x)
      if (IsHair(lines, y, x, 1, 0) || IsHair(lines, y, x, 0, 1)) mask(y, x) = 255;
  return mask;
}

float MeanByDefinition(const BytePlane& plane) {
  float sum = 0.0f;
  for (int p = 0; p < static_cast<int>(plane.numElements()); ++p) sum += plane.data()[p];
  return sum / static_cast<float>(plane.numElements());
}

TEST(ScratchMask, EqualsItsDefinitionOnRandomPictures) {
  ForPictures([](const ChannelSet& image, int focus) {
    for (const int style : {kRough, kSmooth})
      for (const float tone : {0.0f, 100.0f, 131.7f, 255.0f})
        for (const float push : {0.0f, 0.013f, 0.4f, 12.0f}) {
          SCOPED_TRACE(testing::Message() << "style " << style << " tone " << tone << " push " << push);
          ExpectWithAnyWorkers(MaskByDefinition(tone, style, push, focus, image),
                               [&] { return BytePlane(ScratchMask(tone, style, push, focus, image).planes(0)); });
        }
  });
}

TEST(ScratchMask, ClearsLinesOnePixelWideButNotTheirEnds) {
  const std::string drawn =
      "...#............"
      "...#......##...."
      "...#......##...."
      "................"
      "...........#...."
      "...#####....#..."
      ".............#.."
      "................";
  const std::string left =
      "...#............"
      "...#......##...."
      "...#......##...."
      "................"
      "...........#...."
      "...#...#....#..."
      ".............#.."
      "................";
  ChannelSet image("RGB", 16, 8);
  for (int i = 0; i < 3; ++i)
    std::transform(drawn.begin(), drawn.end(), image.planes(i).data(), [](char c) { return c == '#' ? 50 : 200; });
  const BytePlane mask(ScratchMask(0.0f, kRough, 0.0f, 4, image).planes(0));
  std::string seen(left.size(), '.');
  std::transform(mask.data(), mask.data() + seen.size(), seen.begin(), [](int ink) { return ink == 0 ? '#' : '.'; });
  EXPECT_EQ(left, seen);
}

TEST(ScratchboardOutlines, FollowTheDeviationOfTheFrame) {
  constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};
  std::mt19937 rng(56);
  // The largest one has sums beyond the whole numbers that single precision holds.
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 9}, {17, 23}, {330, 500}})
    for (const float detail : {0.0f, 3.1f, 4.75f, 5.0f}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " detail " << detail);
      const ChannelSet source = RandomPicture(height, width, rng), picture = RandomPicture(height, width, rng);
      BytePlane luma(LumaPlane601(source));
      const float mean = MeanByDefinition(luma);
      for (unsigned char& sample : luma)
        sample = static_cast<unsigned char>(std::abs(static_cast<float>(sample) - mean) + 0.5f);
      const auto p = static_cast<float>(std::pow(10.0, static_cast<double>((5.0f - detail) / 5.0f)));
      const float push = MeanByDefinition(luma) * ((p - 1.0f) * 10.0f / 9.0f / 200.0f);
      const ChannelSet mask("L", source.width(), source.height(),
                            MaskByDefinition(0.55f * 255.0f, kRough, push, 3, source));
      const ScratchboardOutlineSettings settings = {0.55f, kRough, detail, 3, 0.5f, false, 0.1f};
      const ChannelSet expected = CompositeOutlineMask(picture, mask, 0.5f, 0.1f, kBlack);
      ExpectWithAnyWorkers(expected, [&] { return ScratchboardOutlines(settings, kBlack, source, picture); });
    }
}

}  // namespace
}  // namespace quentara
