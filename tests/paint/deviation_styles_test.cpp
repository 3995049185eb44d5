// The smoother by local medians, and the two styles that stand on it: Bristle and Gouache.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "imageops/luma.h"
#include "imageops/luma_chroma.h"
#include "imageops/resample.h"
#include "imageops/window_definitions.h"
#include "paint/bristle.h"
#include "paint/deviation_paint.h"
#include "paint/gouache.h"
#include "paint/sharpen.h"
#include "render/settings.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

using Point = std::pair<int, int>;

float MeanByDefinition(const std::vector<Point>& points, const BytePlane& medians, const FloatPlane& deviations) {
  float sum = 0.0f, weights = 0.0f;
  for (auto [y, x] : points) {
    y = std::clamp(y, 0, medians.rows() - 1), x = std::clamp(x, 0, medians.cols() - 1);
    const auto w = static_cast<float>(std::pow(static_cast<double>(deviations(y, x)), 7.5));
    sum += static_cast<float>(medians(y, x)) / w;
    weights += 1.0f / w;
  }
  return sum / weights;
}

BytePlane CoreByDefinition(const BytePlane& plane, int r, float q) {
  const BytePlane m1(MedianByDefinition(Square(r), plane)), m2(MedianByDefinition(Diamond(r), plane));
  FloatPlane d1(MedianDeviationByDefinition(Square(r), plane, m1));
  FloatPlane d2(MedianDeviationByDefinition(Diamond(r), plane, m2));
  d1 = d1 + 1.0f - min(d1);
  d2 = d2 + 1.0f - min(d2);
  const float a = static_cast<float>(r - 1) / static_cast<float>(r), b = 1.0f / static_cast<float>(r);
  return PlaneOf(plane.rows(), plane.cols(), [&](int y, int x) {
    const float k1 = MeanByDefinition({{y - r, x - r}, {y - r, x + r}, {y + r, x - r}, {y + r, x + r}}, m1, d1);
    const float k2 = MeanByDefinition({{y, x - r}, {y, x + r}, {y - r, x}, {y + r, x}}, m2, d2);
    const float m = std::floor(a * m2(y, x) + b * m1(y, x)), k = a * k2 + b * k1;
    const float t = std::clamp(m + q * (k - m), 0.0f, 255.0f);
    return ToByte(q == 1.0f || t > m + 96.0f || t < m - 96.0f ? k : t);
  });
}

BytePlane PaintByDefinition(const BytePlane& plane, int r, float q, int quality) {
  const int height = plane.rows(), width = plane.cols();
  const auto enlarged = [](int size) { return static_cast<int>(static_cast<float>(size) * 1.414213f); };
  const bool high = quality == kHigh;
  const BytePlane core(CoreByDefinition(high ? ResampleLuma(plane, enlarged(height), enlarged(width)) : plane, r, q));
  const BytePlane painted(high ? ResampleLuma(core, height, width) : core);
  if (r < 3) return painted;
  const int last = high ? static_cast<int>(static_cast<float>(r - 2) / 1.414213f + 0.5f) : r - 2;
  const auto n = static_cast<float>(r - 5);
  const auto mix = [&](float sample, float median) {
    return ToByte(r < 8 ? 0.5f * median + 0.5f * sample : (n - 1.0f) / n * median + 1.0f / n * sample);
  };
  return EachPixel(mix, painted, MedianByDefinition(Square(last), painted));
}

TEST(DeviationPaint, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  const int cases[][3] = {{1, 1, 1},   {1, 1, 4},   {1, 30, 2},  {30, 1, 3},  {2, 2, 3},
                          {50, 21, 1}, {50, 21, 3}, {40, 21, 7}, {60, 31, 8}, {60, 31, 12}};
  for (const auto& [height, width, spread] : cases)
    for (const int quality : {kFast, kHigh})
      for (const float push : {1.0f, 1.5f, 5.0f}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " spread " << spread << " push " << push
                                        << " quality " << quality);
        const BytePlane plane(rng() % 3 == 0 ? RandomPlane(height, width, rng) : PatchyPlane(height, width, rng));
        ExpectWithAnyWorkers(PaintByDefinition(plane, spread, push, quality),
                             [&, r = spread] { return DeviationPaint(plane, r, push, quality); });
      }
}

FloatPlane SharpenedByDefinition(float p, const FloatPlane& plane) {
  return PlaneOf<float>(plane.rows(), plane.cols(), [&](int y, int x) {
    std::vector<Point> block;
    for (int j = y - 1; j <= y + 1; ++j)
      for (int i = x - 1; i <= x + 1; ++i)
        if (j >= 0 && j < plane.rows() && i >= 0 && i < plane.cols()) block.push_back({j, i});
    const auto c = static_cast<float>(block.size() - 1);
    float sum = 0.0f;
    for (const auto& [j, i] : block) sum += j == y && i == x ? plane(j, i) * c * p : -(p - 1.0f) * plane(j, i);
    return c > 0.0f ? sum / c : plane(y, x);
  });
}

TEST(BristleStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int spread) {
    const FloatPlane y(FloatLuma709(picture));
    for (const int quality : {kFast, kHigh})
      for (const float presharpen : {1.0f, 11.0f, 101.0f}) {
        const auto limit = [](float luma, float sharpened) {
          const float s = std::clamp(sharpened, 0.0f, 255.0f);
          return ToByte(s > luma + 96.0f || luma - 96.0f > s ? luma : s);
        };
        const BytePlane prepared(EachPixel(limit, y, SharpenedByDefinition(presharpen, y)));
        const FloatPlane painted(blitz::cast<float>(PaintByDefinition(prepared, spread, 1.5f, quality)));
        ExpectWithAnyWorkers(WithLuma709(picture, painted),
                             [&] { return BristleStyle(presharpen, spread, 1.5f, quality, picture); });
      }
  });
}

TEST(GouacheStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int spread) {
    const BytePlane luma(LumaPlane709(picture));
    for (const int quality : {kFast, kHigh})
      for (const auto& [preblur, gain] : {std::pair{3, 1.0f}, {3, 1.75f}, {10, 11.0f}}) {
        const auto sharpen = [k = gain](float sample, float median) {
          const float t = std::clamp(median + k * sample - k * median, 0.0f, 255.0f);
          return ToByte(t > sample + 96.0f || sample - 96.0f > t ? median : t);
        };
        const BytePlane p(EachPixel(sharpen, luma, MedianByDefinition(Square(preblur), luma)));
        ExpectWithAnyWorkers(
            ReplaceLuma(picture, luma, PaintByDefinition(p, spread, 1.25f, quality)),
            [&, r = preblur, k = gain] { return GouacheStyle(r, k, spread, 1.25f, quality, picture); });
      }
  });
}

TEST(DeviationStyles, StopBetweenSteps) {
  std::mt19937 rng(4);
  const ChannelSet picture = RandomPicture(9, 9, rng);
  EXPECT_EQ("", StopsAtEachOf(3, [&] { BristleStyle(51.0f, 3, 1.5f, kHigh, picture); }));
  EXPECT_EQ("", StopsAtEachOf(4, [&] { GouacheStyle(3, 1.75f, 3, 1.25f, kFast, picture); }));
}

}  // namespace
}  // namespace quentara
