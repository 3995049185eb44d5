#include "print/halftone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "imageops/resample.h"
#include "print/screen_grid.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

// Where a pixel falls by the polar form alone, as row * cell + column.
int PlaceByDefinition(float angle, int cell, int row, int column) {
  if (angle == 0.0f) return row % cell * cell + column % cell;
  const float y = static_cast<float>(row), x = static_cast<float>(column);
  const float a = angle * 3.1415927f / 180.0f, r = std::sqrt(y * y + x * x);
  const double turned = static_cast<double>(a + static_cast<float>(std::atan2(double{y}, double{x})));
  const auto reduced = [&](double turn) {
    const int whole = static_cast<int>(std::floor(r * static_cast<float>(turn) + 0.5f));
    return ((whole % cell) + cell) % cell;
  };
  return reduced(std::sin(turned)) * cell + reduced(std::cos(turned));
}

void ExpectPolarForm(const ScreenGrid& grid, float angle, int y) {
  std::vector<std::uint16_t> places(static_cast<std::size_t>(grid.width())), expected;
  grid.PlacesOfRow(y, places.data());
  for (int x = 0; x < grid.width(); ++x)
    expected.push_back(static_cast<std::uint16_t>(PlaceByDefinition(angle, grid.cell(), y, x)));
  ASSERT_EQ(expected, places) << "row " << y << " of angle " << angle << " cell " << grid.cell();
}

// Every pixel of a large frame at the effect's default angles and cell.
TEST(ScreenGrid, IsThePolarFormOnALargeFrame) {
  constexpr int kSide = 4096;
  for (const float angle : {15.0f, 75.0f, 0.0f}) {
    const ScreenGrid grid(angle, 5, kSide, kSide);
    for (int y = 0; y < kSide; ++y) ASSERT_NO_FATAL_FAILURE(ExpectPolarForm(grid, angle, y));
  }
}

TEST(ScreenGrid, IsThePolarFormAtAnyAngleAndCellOnEveryInstructionSet) {
  std::mt19937 rng(62);
  for (const float angle : {0.0f, 0.01f, 15.0f, 30.0f, 33.3f, 45.0f, 60.0f, 75.0f, 89.99f, 90.0f})
    for (const int cell : {1, 3, 10, 23, 64}) {
      const ScreenGrid grid(angle, cell, 8192, 8183);
      for (const int y : {0, 1, 4096, 8191, static_cast<int>(rng() % 8192)})
        ForInstructionSets([&] { ExpectPolarForm(grid, angle, y); });
    }
}

BytePlane TileByDefinition(int cell) {
  std::map<float, std::vector<std::pair<int, int>>> spots;
  const float last = static_cast<float>(cell - 1);
  for (int i = 0; i < cell; ++i)
    for (int j = 0; j < cell; ++j) {
      const float a = (static_cast<float>(i) / last - 0.5f) * 2.0f, b = (static_cast<float>(j) / last - 0.5f) * 2.0f;
      spots[1.0f - (b * b + a * a)].emplace_back(i, j);
    }
  BytePlane tile(cell, cell);
  float k = 0.0f;
  for (const auto& [spot, places] : spots)
    for (const auto& [i, j] : places)
      tile(i, j) = static_cast<unsigned char>(++k / static_cast<float>(cell * cell + 1) * 255.0f + 0.5f);
  return tile;
}

BytePlane ScreenByDefinition(const BytePlane& plane, float angle, int cell, int quality) {
  if (quality == kHigh) {
    const BytePlane doubled(
        PlaneOf(2 * plane.rows(), 2 * plane.cols(), [&](int y, int x) { return plane(y / 2, x / 2); }));
    return ResampleLuma(ScreenByDefinition(doubled, angle, 2 * cell, kFast), plane.rows(), plane.cols());
  }
  const BytePlane tile(TileByDefinition(cell));
  return PlaneOf(plane.rows(), plane.cols(), [&](int y, int x) {
    return plane(y, x) < tile.data()[PlaceByDefinition(angle, cell, y, x)] ? 0 : 255;
  });
}

TEST(HalftonePattern, EqualsItsDefinitionOnRandomPictures) {
  for (const int quality : {kFast, kHigh})
    for (const auto& [size, mixed] : {std::pair{1, 0.0f}, {3, 0.3f}, {30, 0.0f}})
      ForPictures([&, dotSize = size, transparency = mixed](const ChannelSet& picture, int) {
        SCOPED_TRACE(testing::Message() << "quality " << quality << " dot size " << dotSize);
        const HalftoneSettings settings = {dotSize, 15.0f, 90.0f, 0.0f, quality, transparency};
        const float angles[] = {15.0f, 90.0f, 0.0f};
        ChannelSet expected =
            Rgb([&](int i) { return ScreenByDefinition(picture.planes(i), angles[i], dotSize + 2, quality); });
        MixImages(picture, expected, 1.0f - transparency);
        ExpectWithAnyWorkers(expected, [&] { return HalftonePattern(settings, picture); });
      });
}

}  // namespace
}  // namespace quentara
