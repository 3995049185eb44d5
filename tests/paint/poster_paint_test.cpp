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
#include "support/planes.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

struct Levels {
  std::vector<int> t, v;
};

struct Counter {
  long cnt = 0, sum = 0;
  void Add(const std::vector<long>& h, int v) {
    cnt += h[static_cast<std::size_t>(v)], sum += h[static_cast<std::size_t>(v)] * v;
  }
  int Mean() const {
    return cnt == 0 ? 0 : static_cast<int>(std::floor(static_cast<float>(sum) / static_cast<float>(cnt) + 0.5f));
  }
};

Levels EqualCountByDefinition(const std::vector<long>& h, int pixels, int n) {
  const auto target = static_cast<long>(std::floor(static_cast<float>(pixels) / static_cast<float>(n) + 0.5f));
  Levels levels{std::vector<int>(static_cast<std::size_t>(n - 1), 255), {}};
  int v = -1;
  for (int& threshold : levels.t) {
    Counter level;
    while (v < 255) {
      level.Add(h, ++v);
      if (level.cnt >= target) break;
    }
    threshold = v;
    levels.v.push_back(level.Mean());
  }
  Counter last;
  while (v < 255) last.Add(h, ++v);
  levels.v.push_back(last.Mean());
  return levels;
}

Levels EvenByDefinition(const std::vector<long>& h, int n) {
  Levels levels;
  int v = -1;
  for (int i = 0; i < n; ++i) {
    const int threshold = i == n - 1 ? 255 : static_cast<int>(std::floor(255.0 * (i + 1) / n + 0.5));
    Counter level;
    while (v < threshold) level.Add(h, ++v);
    if (i < n - 1) levels.t.push_back(threshold);
    levels.v.push_back(level.Mean());
  }
  return levels;
}

void ApplyByDefinition(BytePlane& plane, const Levels& levels) {
  for (int i = 0; i < static_cast<int>(plane.numElements()); ++i) {
    std::size_t level = 0;
    while (level < levels.t.size() && plane.data()[i] > levels.t[level]) ++level;
    plane.data()[i] = static_cast<unsigned char>(levels.v[level]);
  }
}

BytePlane MaskByDefinition(const BytePlane& plane, float foreground) {
  FloatPlane d(MedianDeviationByDefinition(Square(1), plane, MedianByDefinition(Square(1), plane)));
  const float lo = min(d), hi = std::max(max(d), 0.000001f), e = 1.0f - foreground;
  BytePlane mask(plane.rows(), plane.cols());
  for (int i = 0; i < static_cast<int>(d.numElements()); ++i) {
    const auto power =
        static_cast<float>(std::pow(static_cast<double>((d.data()[i] - lo) / hi), static_cast<double>(e)));
    const auto tangent = static_cast<float>(std::tanh(static_cast<double>(50.0f * power - 25.0f)));
    mask.data()[i] = ToByte(255.0f * (tangent + 1.0f) / 2.0f);
  }
  return mask;
}

BytePlane DiffusedByDefinition(int rounds, const BytePlane& plane) {
  const int h = plane.rows(), w = plane.cols();
  FloatPlane x(blitz::cast<float>(plane)), z(x.copy());
  for (int round = 0; round < rounds; ++round) {
    for (int i = 1; i < h - 1; ++i)
      for (int j = 0; j < w; ++j) z(i, j) = (x(i + 1, j) + x(i - 1, j)) / 2.0f;
    x = z;
    for (int i = 0; i < h; ++i)
      for (int j = 1; j < w - 1; ++j) z(i, j) = (x(i, j + 1) + x(i, j - 1)) / 2.0f;
    x = z;
    for (int j = 0; j < w && h > 1; ++j) z(0, j) = x(1, j);
    for (int j = 0; j < w && h > 1; ++j) z(h - 1, j) = x(h - 2, j);
    for (int i = 0; i < h && w > 1; ++i) z(i, 0) = x(i, 1);
    for (int i = 0; i < h && w > 1; ++i) z(i, w - 1) = x(i, w - 2);
    x = z;
  }
  return BytePlane(blitz::cast<unsigned char>(z + 0.5f));
}

ChannelSet PosterByDefinition(int paint1, int paint2, float blend, float foreground, int radius, float contrast,
                              const ChannelSet& picture) {
  BytePlane p(BrightestPlane(picture));
  BytePlane c(p.copy());
  const auto count = static_cast<int>(p.numElements());
  std::vector<long> h(256);
  for (int i = 0; i < count; ++i) ++h[p.data()[i]];
  if (blend < 1.0f) ApplyByDefinition(p, EqualCountByDefinition(h, count, paint1));
  if (blend > 0.0f) ApplyByDefinition(c, EvenByDefinition(h, paint2));
  for (int i = 0; i < count; ++i)
    p.data()[i] = blend == 0.0f   ? p.data()[i]
                  : blend == 1.0f ? c.data()[i]
                                  : ToByte(blend * c.data()[i] + (1.0f - blend) * p.data()[i]);
  const int lo = min(p), hi = max(p);
  for (int i = 0; i < count && contrast > 0.0f; ++i) {
    const float stretched =
        hi == lo ? 0.0f : static_cast<float>(p.data()[i] - lo) * 255.0f / static_cast<float>(hi - lo);
    p.data()[i] = ToByte(contrast * std::floor(stretched) + (1.0f - contrast) * p.data()[i]);
  }
  const BytePlane a(MaskByDefinition(BrightestPlane(picture), foreground)), soft(DiffusedByDefinition(radius, p));
  FloatChannelSet hsv = RgbToHsv(picture);
  for (int i = 0; i < count; ++i) {
    const float hard = static_cast<float>(p.data()[i] * a.data()[i]) / 255.0f;
    hsv.planes(2).data()[i] = std::floor(hard + soft.data()[i] * (1.0f - a.data()[i] / 255.0f) + 0.5f);
  }
  const auto planes = hsv.Split();
  return HsvToRgb(planes[0], planes[1], planes[2]);
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

TEST(DiagonalDiffusion, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(3);
  for (const auto& [height, width, rounds] : {std::array{1, 1, 3},
                                              {1, 2, 3},
                                              {2, 1, 3},
                                              {2, 2, 5},
                                              {1, 9, 4},
                                              {9, 1, 4},
                                              {2, 9, 3},
                                              {9, 2, 3},
                                              {3, 3, 9},
                                              {64, 12, 0},
                                              {64, 12, 1},
                                              {64, 12, 4}}) {
    SCOPED_TRACE(testing::Message() << height << "x" << width << " rounds " << rounds);
    const BytePlane plane(RandomPlane(height, width, rng));
    ExpectWithAnyWorkers(DiffusedByDefinition(rounds, plane), [&, n = rounds] { return DiagonalDiffusion(n, plane); });
  }
  BytePlane board(8, 8);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) board(y, x) = (x + y) % 2 == 0 ? 40 : 220;
  const BytePlane diffused(DiagonalDiffusion(1, board));
  for (int y = 1; y < 7; ++y)
    for (int x = 1; x < 7; ++x) EXPECT_EQ(board(y, x), diffused(y, x));  // only pixels of one colour meet
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

TEST(DetailMask, MarksOnlyBusyPlaces) {
  BytePlane plane(9, 9);
  plane = 100;
  EXPECT_EQ(0, max(DetailMask(plane, 0.85f)));
  EXPECT_EQ(255, min(DetailMask(plane, 1.0f)));
  plane(4, 4) = 200;
  const BytePlane mask(DetailMask(plane, 0.85f));
  EXPECT_EQ(255, mask(3, 5));
  EXPECT_EQ(0, mask(2, 4));
}

}  // namespace
}  // namespace quentara
