#include "paint/poster_paint.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/window_definitions.h"
#include "paint/detail_mask.h"
#include "paint/diagonal_diffusion.h"
#include "paint/level_set.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane MaskByDefinition(const BytePlane& plane, float foreground) {
  const FloatPlane d(MedianDeviationByDefinition(Square(1), plane, MedianByDefinition(Square(1), plane)));
  const float lo = min(d), hi = std::max(max(d), 0.000001f), e = 1.0f - foreground;
  const auto shade = [&](float deviation) {
    const auto power = static_cast<float>(std::pow(static_cast<double>((deviation - lo) / hi), static_cast<double>(e)));
    const auto tangent = static_cast<float>(std::tanh(static_cast<double>(50.0f * power - 25.0f)));
    return ToByte(255.0f * (tangent + 1.0f) / 2.0f);
  };
  return EachPixel(shade, d);
}

BytePlane DiffusedByDefinition(int rounds, const BytePlane& plane) {
  const int h = plane.rows(), w = plane.cols();
  FloatPlane p(blitz::cast<float>(plane));
  for (int round = 0; round < rounds; ++round) {
    p.reference(PlaneOf<float>(
        h, w, [&](int y, int x) { return y > 0 && y < h - 1 ? (p(y + 1, x) + p(y - 1, x)) / 2.0f : p(y, x); }));
    p.reference(PlaneOf<float>(
        h, w, [&](int y, int x) { return x > 0 && x < w - 1 ? (p(y, x + 1) + p(y, x - 1)) / 2.0f : p(y, x); }));
    p.reference(PlaneOf<float>(h, w, [&](int y, int x) {
      if (w > 1 && (x == 0 || x == w - 1)) return p(y, x == 0 ? 1 : w - 2);
      return h > 1 && (y == 0 || y == h - 1) ? p(y == 0 ? 1 : h - 2, x) : p(y, x);
    }));
  }
  return EachPixel(ToByte, p);
}

ChannelSet PosterByDefinition(int paint1, int paint2, float blend, float foreground, int radius, float contrast,
                              const ChannelSet& picture) {
  const BytePlane brightest(BrightestPlane(picture));
  Histogram h = {};
  for (const unsigned char value : brightest) ++h[value];
  const auto mix = [&](float c, float p) {
    return blend == 0.0f ? p : blend == 1.0f ? c : blend * c + (1.0f - blend) * p + 0.5f;
  };
  BytePlane p(EachPixel(mix, MapBytes(MapToLevels(EvenLevels(h, paint2)), brightest),
                        MapBytes(MapToLevels(EqualCountLevels(h, paint1)), brightest)));
  const float lo = min(p), hi = max(p);
  const auto stretch = [&](float sample) {
    const float stretched = hi == lo ? 0.0f : std::floor((sample - lo) * 255.0f / (hi - lo));
    return ToByte(contrast * stretched + (1.0f - contrast) * sample);
  };
  if (contrast > 0.0f) p.reference(EachPixel(stretch, p));
  const auto lay = [](float sample, float mask, float soft) {
    return std::floor(sample * mask / 255.0f + soft * (1.0f - mask / 255.0f) + 0.5f);
  };
  return ReplaceValue(picture,
                      EachPixel(lay, p, MaskByDefinition(brightest, foreground), DiffusedByDefinition(radius, p)));
}

TEST(PosterPaintStyle, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int radius) {
    for (const float blend : {0.0f, 0.5f, 0.3f, 1.0f})
      for (const float contrast : {0.0f, 0.5f, 1.0f})
        for (const float foreground : {0.0f, 0.85f, 1.0f})
          ExpectWithAnyWorkers(PosterByDefinition(6, 5, blend, foreground, radius, contrast, picture),
                               [&] { return PosterPaintStyle(6, 5, blend, foreground, radius, contrast, picture); });
    ExpectWithAnyWorkers(PosterByDefinition(25, 2, 0.5f, 0.85f, 40, 0.5f, picture),
                         [&] { return PosterPaintStyle(25, 2, 0.5f, 0.85f, 40, 0.5f, picture); });
  });
  std::mt19937 rng(2);
  const ChannelSet picture = RandomPicture(5, 5, rng);
  EXPECT_EQ("", StopsAtEachOf(1, [&] { PosterPaintStyle(6, 6, 0.5f, 0.85f, 3, 0.5f, picture); }));
}

TEST(LevelSet, OneFullBinTakesItsLevelAndTheNextStartsBehindIt) {
  Histogram histogram = {};
  histogram[10] = 1, histogram[20] = 70, histogram[30] = 20, histogram[200] = 9;
  const LevelSet levels = EqualCountLevels(histogram, 4);  // 25 samples each
  EXPECT_EQ((std::vector<int>{20, 200, 255}), levels.thresholds);
  // (10 + 70 * 20) / 71, (600 + 1800) / 29, and nothing left
  EXPECT_EQ((std::vector<unsigned char>{20, 83, 0, 0}), levels.values);
  const LevelSet even = EvenLevels(histogram, 4);
  EXPECT_EQ((std::vector<int>{64, 128, 191}), even.thresholds);
  EXPECT_EQ((std::vector<unsigned char>{22, 0, 0, 200}), even.values);  // 2010 / 91
  EXPECT_EQ(22, MapToLevels(even)[64]);
  EXPECT_EQ(0, MapToLevels(even)[65]);
}

}  // namespace
}  // namespace quentara
