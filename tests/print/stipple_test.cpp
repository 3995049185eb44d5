#include "print/stipple.h"

#include <gtest/gtest.h>

#include <cmath>

#include "print/noise.h"
#include "print/stipple_seed.h"
#include "render/bands.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

/// Resizes by the cubic in its general form.
BytePlane CubicByDefinition(const BytePlane& plane, int height, int width) {
  const auto cubic = [](const float* p, float t) {
    return p[1] + t * (p[2] - p[0] + t * (2.0f * (p[0] - p[1]) + p[2] - p[3] + t * (p[1] - p[0] + p[3] - p[2])));
  };
  const float ky = static_cast<float>(plane.rows()) / static_cast<float>(height);
  const float kx = static_cast<float>(plane.cols()) / static_cast<float>(width);
  return PlaneOf(height, width, [&](int y, int x) {
    const float sy = ky * static_cast<float>(y) - 0.5f, sx = kx * static_cast<float>(x) - 0.5f;
    const float fy = std::floor(sy), fx = std::floor(sx);
    float down[4];
    for (int i = 0; i < 4; ++i) {
      float across[4];
      for (int j = 0; j < 4; ++j)
        across[j] = plane(std::clamp(static_cast<int>(fy) + i - 1, 0, plane.rows() - 1),
                          std::clamp(static_cast<int>(fx) + j - 1, 0, plane.cols() - 1));
      down[i] = cubic(across, sx - fx);
    }
    return std::clamp(cubic(down, sy - fy), 0.0f, 255.0f);
  });
}

BytePlane DotsByDefinition(const BytePlane& plane, std::uint32_t seed, int firstRow) {
  const int height = plane.rows(), width = plane.cols();
  const BytePlane large(CubicByDefinition(plane, 2 * height, 2 * width));
  const BytePlane dots(PlaneOf(2 * height, 2 * width, [&](int y, int x) {
    const unsigned char noise = NoiseHash(seed + static_cast<std::uint32_t>((y + firstRow * 2) * 2 * width + x));
    return noise > large(y, x) ? 0 : large(y, x);
  }));
  return CubicByDefinition(dots, height, width);
}

BytePlane StampByDefinition(int radius, const BytePlane& plane) {
  const int centre = 3 * radius + 1;
  BytePlane out(plane.copy());
  for (int y = 0; y < plane.rows(); ++y)
    for (int x = 0; x < plane.cols(); ++x)
      for (int i = 0; i <= 2 * radius && plane(y, x) == 0; ++i)
        for (int j = 0; j <= 2 * radius; ++j) {
          float sum = 0.0f;
          for (int k = 0; k < 9; ++k)
            sum += std::hypot(centre - 3 * i - k / 3, centre - 3 * j - k % 3) <= centre ? 0.0f : 255.0f;
          const int toY = y + i - radius, toX = x + j - radius;
          if (toY >= 0 && toX >= 0 && toY < plane.rows() && toX < plane.cols())
            out(toY, toX) = std::min(out(toY, toX), static_cast<unsigned char>(sum / 9.0f + 0.5f));
        }
  return out;
}

BytePlane MaskByDefinition(const StippleSettings& s, Tones tones, std::uint32_t seed, const ChannelSet& source) {
  if (tones.spread == 0.0f) tones.spread = 15.0f;
  const float c = (1.0f - s.density) * 7.5f * tones.spread;
  const float cut = std::floor(tones.median + (s.thresh * 10.0f - 5.5f) * tones.spread) + 0.5f;
  BytePlane mask(source.planes(0).shape());
  mask = 0;
  for (int i = 0; i < 3; ++i) {
    const BytePlane lifted(
        EachPixel([&](float v) { return std::clamp(v + c, 0.0f, 255.0f) + 0.5f; }, source.planes(i)));
    ForRowBands(mask.rows(), [&](int first, int rows) {
      const BytePlane dots(DotsByDefinition(WrapRows(lifted, first, rows), seed, first));
      for (int p = 0; p < static_cast<int>(dots.numElements()); ++p)
        if (dots.data()[p] > std::clamp(cut, 1.5f, 253.5f)) Row(mask, first)[p] = 255;
    });
    seed = static_cast<std::uint32_t>(static_cast<float>(seed) * 2.0f / 3.0f + 0.5f);
  }
  return s.dotSize == 1 ? mask : StampByDefinition(s.dotSize - 1, mask);
}

TEST(NoiseHash, MixesBytesThroughItsTables) {
  EXPECT_EQ(13, NoiseHash(0));
  EXPECT_EQ(83, NoiseHash(1));
  EXPECT_EQ(238, NoiseHash(0x01020300));
  EXPECT_EQ(56, NoiseHash(0xFFFFFFFF));
  unsigned char run[700];
  for (const std::uint32_t first : {0u, 4294967000u}) {  // across the end of the numbers, too
    NoiseRun(first, 700, run);
    for (std::uint32_t i = 0; i < 700; ++i) ASSERT_EQ(NoiseHash(first + i), run[i]);
  }
}

TEST(DiscStamp, EqualsItsDefinitionOnRandomPlanes) {
  std::mt19937 rng(64);
  for (const int radius : {1, 2, 5, 29}) {
    BytePlane plane(RandomPlane(23, 31, rng));
    plane(11, 15) = 0;
    EXPECT_EQ("", FirstDifference(StampByDefinition(radius, plane), DiscStamp(radius, plane)));
  }
}

TEST(StippleMask, EqualsItsDefinitionOnRandomPictures) {
  for (const auto& [settings, tones] : {std::pair{StippleSettings{0.9f, 0.6f, 1, 0.0f}, Tones{90.0f, 20.0f}},
                                        {StippleSettings{1.0f, 0.5f, 3, 0.0f}, Tones{200.0f, 0.0f}},
                                        {StippleSettings{1.0f, 0.0f, 2, 0.0f}, Tones{100.0f, 60.0f}}})
    ForPictures([&, chosen = settings, levels = tones](const ChannelSet& picture, int) {
      ForWorkers([&](int) {
        const BytePlane expected(MaskByDefinition(chosen, levels, 4000000000u, picture));
        EXPECT_EQ("", FirstDifference(expected, StippleMask(chosen, levels, 4000000000u, picture).planes(0)));
      });
    });
}

TEST(StipplePattern, DiffersBetweenRendersUnlessItsSeedIsFixed) {
  const ChannelSet picture = Rgb([](int) { return PlaneOf(60, 60, [](int, int) { return 90; }); });
  const auto stippled = [&] {
    return StipplePattern({1.0f, 0.5f, 1, 0.25f}, MakeOutlineColor({1.0f, 0.0f, 0.0f}), {100.0f, 20.0f}, picture,
                          picture);
  };
  EXPECT_NE("", FirstDifference(stippled(), stippled()));
  const StippleSeedScope fixed(42);
  const ChannelSet once = stippled();
  EXPECT_EQ("", FirstDifference(once, stippled()));
  for (const unsigned char red : once.planes(0))
    EXPECT_TRUE(red == 90 || red == 214) << +red;  // 255 * 0.75 + 90 * 0.25
}

}  // namespace
}  // namespace quentara
