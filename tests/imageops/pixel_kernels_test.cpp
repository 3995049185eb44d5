#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "imageops/window_kernels_dispatch.h"
#include "support/planes.h"

namespace quentara {
namespace {

constexpr int kPixels = 3 * 64 + 37;  // whole registers of every set and some more

using Bytes = std::vector<std::uint8_t>;
using Floats = std::vector<float>;

struct Hsv {
  float hue, saturation, value;
};

Hsv HsvByDefinition(float r, float g, float b) {
  const float most = std::max({r, g, b}), least = std::min({r, g, b});
  if (most == least) return {0.0f, 0.0f, most};
  const float delta = (most - least) / 255.0f;
  float sixths = 0.0f;
  if (r == most)
    sixths = (g - b) / 255.0f / delta;
  else if (g == most)
    sixths = 2.0f + (b - r) / 255.0f / delta;
  else
    sixths = 4.0f + (r - g) / 255.0f / delta;
  const float degrees = sixths * 60.0f;
  return {degrees < 0.0f ? degrees + 360.0f : degrees, (most - least) / most, most};
}

std::array<int, 3> RgbByDefinition(const Hsv& hsv) {
  const float sixths = (hsv.hue == 360.0f ? 0.0f : hsv.hue) / 60.0f;
  const int sextant = static_cast<int>(sixths);
  const float f = sixths - static_cast<float>(sextant), s = hsv.saturation;
  const int v = ToByte(hsv.value), p = ToByte(hsv.value * (1.0f - s)), q = ToByte(hsv.value * (1.0f - s * f)),
            t = ToByte(hsv.value * (1.0f - s * (1.0f - f)));
  const std::array<int, 3> sextants[] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};
  return sextants[sextant];
}

class PixelKernelsTest : public testing::TestWithParam<const WindowKernels*> {
 protected:
  Bytes Samples(std::size_t count = kPixels) {
    Bytes samples(count);
    for (std::uint8_t& sample : samples) sample = static_cast<std::uint8_t>(rng_() % 256);
    return samples;
  }
  float Share() { return static_cast<float>(rng_() % 1001) / 1000.0f; }

  const PixelKernels& kernels_ = GetParam()->pixel;
  std::mt19937 rng_{1};
};

TEST_P(PixelKernelsTest, WeighMapAndTurnBytesByTheirDefinitions) {
  const Bytes red = Samples(), map = Samples(256);
  Bytes green = Samples(), blue = Samples();
  for (int i = 0; i < kPixels; i += 3) green[i] = i % 2 == 0 ? red[i] : blue[i];  // greys and ties of two channels
  for (int i = 0; i < kPixels; i += 6) blue[i] = red[i];
  Bytes marks(kPixels), plainMarks(kPixels);
  kernels_.markSkin({red.data(), green.data(), blue.data()}, marks.data(), kPixels);
  RunnableKernels()[0]->pixel.markSkin({red.data(), green.data(), blue.data()}, plainMarks.data(), kPixels);
  EXPECT_EQ(plainMarks, marks);
  const float weights[] = {0.2126f, 0.7152f, 0.0722f};
  Bytes luma(kPixels), mapped(kPixels);
  Floats hue(kPixels), saturation(kPixels), value(kPixels);
  kernels_.luma(weights, {red.data(), green.data(), blue.data()}, luma.data(), kPixels);
  kernels_.mapBytes(map.data(), red.data(), mapped.data(), kPixels);
  kernels_.toHsv(red.data(), green.data(), blue.data(), hue.data(), saturation.data(), value.data(), kPixels);
  for (int i = 0; i < kPixels; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(ToByte(weights[0] * red[i] + weights[1] * green[i] + weights[2] * blue[i]), luma[i]);
    EXPECT_EQ(map[red[i]], mapped[i]);
    const Hsv expected = HsvByDefinition(red[i], green[i], blue[i]);
    EXPECT_EQ(expected.hue, hue[i]);
    EXPECT_EQ(expected.saturation, saturation[i]);
    EXPECT_EQ(expected.value, value[i]);
  }
}

TEST_P(PixelKernelsTest, GiveColoursOfEverySextant) {
  Floats hue(kPixels), saturation(kPixels), value(kPixels);
  for (int i = 0; i < kPixels; ++i) {
    hue[i] = i % 3 == 0 ? static_cast<float>(i / 3 % 7 * 60) : 359.9999f * Share();
    saturation[i] = Share();
    value[i] = 255.0f * Share();
  }
  Bytes red(kPixels), green(kPixels), blue(kPixels);
  kernels_.fromHsv(hue.data(), saturation.data(), value.data(), red.data(), green.data(), blue.data(), kPixels);
  for (int i = 0; i < kPixels; ++i)
    EXPECT_EQ(RgbByDefinition({hue[i], saturation[i], value[i]}), (std::array<int, 3>{red[i], green[i], blue[i]})) << i;
}

TEST_P(PixelKernelsTest, PlaceScreensAndTellWhereTheyAreNotSure) {
  for (const std::uint32_t cell : {1u, 3u, 7u, 64u}) {
    const std::uint32_t edge = 1u << 24;
    const ScreenRow row = {static_cast<std::uint32_t>(rng_()),
                           static_cast<std::uint32_t>(rng_()),
                           static_cast<std::uint32_t>(rng_()),
                           static_cast<std::uint32_t>(rng_()),
                           cell,
                           edge};
    constexpr int kFirst = 1000;
    std::vector<std::uint16_t> places(kPixels);
    std::vector<std::uint32_t> unsure(kPixels);
    const bool anyUnsure = kernels_.screenPlaces(row, kFirst, places.data(), unsure.data(), kPixels);
    bool anyExpected = false;
    for (std::uint32_t i = 0; i < kPixels; ++i) {
      const auto inCell = [&](std::uint32_t phase) { return static_cast<double>(phase) * cell / 4294967296.0; };
      const double u = inCell(row.firstU + (kFirst + i) * row.stepU), v = inCell(row.firstV + (kFirst + i) * row.stepV);
      EXPECT_EQ(static_cast<std::uint32_t>(v) * cell + static_cast<std::uint32_t>(u), places[i]) << i;
      const auto nearEdge = [&](double place) { return std::abs(place - std::round(place)) * 4294967296.0 <= edge; };
      EXPECT_EQ(nearEdge(u) || nearEdge(v), unsure[i] != 0) << i;
      anyExpected |= nearEdge(u) || nearEdge(v);
    }
    EXPECT_EQ(anyExpected, anyUnsure);
  }
}

INSTANTIATE_TEST_SUITE_P(OnEveryInstructionSet, PixelKernelsTest, testing::ValuesIn(RunnableKernels()),
                         [](const auto& set) { return set.param->name; });

}  // namespace
}  // namespace quentara
