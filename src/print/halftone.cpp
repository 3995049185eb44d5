#include "print/halftone.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <numeric>
#include <vector>

#include "print/screen_grid.h"
#include "render/bands.h"
#include "render/scratch.h"

namespace quentara {
namespace {

using Byte = unsigned char;

// A pixel of the small picture is the mean of 4 pixels, the bilinear interpolation half-way between them, truncated.
constexpr Byte kWhiteShare[] = {0, 63, 127, 191, 255};

void ScreenInBands(const BytePlane& plane, const ScreenGrid& grid, const BytePlane& tile, BytePlane& screened) {
  const Byte* const thresholds = tile.data();
  ForRowBands(plane.rows(), [&](int first, int rows) {
    Scratch<std::uint16_t> places(static_cast<std::size_t>(grid.width()));
    for (int y = first; y < first + rows; ++y) {
      grid.PlacesOfRow(y, places.data());
      const Byte* const samples = Row(plane, y);
      Byte* const dots = Row(screened, y);
      for (int x = 0; x < grid.width(); ++x) dots[x] = samples[x] < thresholds[places[x]] ? 0 : 255;
    }
  });
}

/// Rows of a plane at twice its size, screened and counted on the way back to it.
class DoubledRows {
 public:
  DoubledRows(const BytePlane& plane, const ScreenGrid& grid, const BytePlane& tile)
      : plane_(plane),
        grid_(grid),
        thresholds_(tile.data()),
        places_(static_cast<std::size_t>(grid.width())),
        white_(static_cast<std::size_t>(grid.width())) {}

  /// The row between the doubled rows 2 * y - 1 and 2 * y, and between such columns; the first ones stand alone.
  void ShrinkTo(int y, Byte* dots) {
    std::fill_n(white_.data(), grid_.width(), Byte{0});
    CountWhite(std::max(2 * y - 1, 0));
    CountWhite(2 * y);
    dots[0] = kWhiteShare[2 * white_[0]];
    for (int x = 1; x < plane_.cols(); ++x) dots[x] = kWhiteShare[white_[2 * x - 1] + white_[2 * x]];
  }

 private:
  void CountWhite(int y) {
    grid_.PlacesOfRow(y, places_.data());
    const Byte* const samples = Row(plane_, y / 2);
    const std::uint16_t* const places = places_.data();
    Byte* const white = white_.data();
    for (int x = 0; x < grid_.width(); ++x)
      white[x] = static_cast<Byte>(white[x] + (samples[x / 2] < thresholds_[places[x]] ? 0 : 1));
  }

  const BytePlane& plane_;
  const ScreenGrid& grid_;
  const Byte* const thresholds_;
  Scratch<std::uint16_t> places_;
  Scratch<Byte> white_;
};

void ScreenDoubledInBands(const BytePlane& plane, const ScreenGrid& grid, const BytePlane& tile, BytePlane& screened) {
  ForRowBands(plane.rows(), [&](int first, int rows) {
    DoubledRows doubled(plane, grid, tile);
    for (int y = first; y < first + rows; ++y) doubled.ShrinkTo(y, Row(screened, y));
  });
}

}  // namespace

BytePlane ThresholdTile(int cell) {
  assert(cell >= 2);
  const int places = cell * cell;
  const auto offCentre = [&](int i) { return (static_cast<float>(i) / static_cast<float>(cell - 1) - 0.5f) * 2.0f; };
  std::vector<float> spot(static_cast<std::size_t>(places));
  for (int place = 0; place < places; ++place) {
    const float a = offCentre(place / cell), b = offCentre(place % cell);
    spot[static_cast<std::size_t>(place)] = 1.0f - (b * b + a * a);
  }
  std::vector<std::size_t> order(spot.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t p, std::size_t q) { return spot[p] < spot[q]; });
  BytePlane tile(cell, cell);
  for (int k = 0; k < places; ++k)
    tile.data()[order[static_cast<std::size_t>(k)]] =
        ToByte(static_cast<float>(k + 1) / static_cast<float>(places + 1) * 255.0f);
  return tile;
}

BytePlane HalftoneScreen(const BytePlane& plane, float angle, int cell, int quality) {
  const int scale = quality == kHigh ? 2 : 1;
  const ScreenGrid grid(angle, cell * scale, plane.rows() * scale, plane.cols() * scale);
  const BytePlane tile(ThresholdTile(cell * scale));
  BytePlane screened(plane.rows(), plane.cols());
  if (quality == kHigh)
    ScreenDoubledInBands(plane, grid, tile, screened);
  else
    ScreenInBands(plane, grid, tile, screened);
  return screened;
}

ChannelSet HalftonePattern(const HalftoneSettings& settings, const ChannelSet& picture) {
  const float angles[] = {settings.redAngle, settings.greenAngle, settings.blueAngle};
  ChannelSet screened = BlankLike(picture, picture.height(), picture.width());
  for (int i = 0; i < 3; ++i)
    screened.planes(i).reference(HalftoneScreen(picture.planes(i), angles[i], settings.dotSize + 2, settings.quality));
  if (settings.transparency > 0.0f) MixImages(picture, screened, 1.0f - settings.transparency);
  return screened;
}

}  // namespace quentara
