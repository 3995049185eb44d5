/// The turned grid of a printing screen: where in its cell each pixel of a frame falls.
#pragma once

#include <cstdint>

namespace quentara {

/// A grid of square cells, turned about the frame's top left corner.
///
/// The pixel (y, x) falls on the place (v mod cell, u mod cell) of its cell, by floored division, with
///   a = angle * 3.1415927 / 180, r = sqrt(y * y + x * x), f = atan2(y, x),
///   u = floor(r * cos(a + f) + 0.5), v = floor(r * sin(a + f) + 0.5),
/// every step in single precision, so that the places on the edge of rounding are those of the polar form. At angle 0
/// u = x and v = y.
///
/// The polar form is computed only there. Elsewhere u = x * cos(a) - y * sin(a) and v = x * sin(a) + y * cos(a) lead
/// to the same whole number, and a row takes them as phases of the cell: fractions of 2^32 that wrap with it.
class ScreenGrid {
 public:
  /// @param angle          degrees, 0..90.
  /// @param cell           pixels, 1..64.
  /// @param height, width  of the frame, up to 65536 together.
  ScreenGrid(float angle, int cell, int height, int width);

  int cell() const { return cell_; }
  int width() const { return width_; }

  /// places[x] = v mod cell * cell + u mod cell, for x = 0 .. width() - 1 of row y.
  void PlacesOfRow(int y, std::uint16_t* places) const;

 private:
  std::uint32_t PhaseOf(double pixels) const;
  std::uint16_t PolarPlace(int y, int x) const;

  const float angle_;  ///< radians
  const int cell_;
  const int width_;
  const double cosine_;
  const double sine_;
  const std::uint32_t edge_;  ///< how near to a whole number the polar form may round otherwise, in 2^-32 pixels
};

}  // namespace quentara
