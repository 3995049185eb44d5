/// Rotation of a plane about its centre, by inverse mapping and bilinear interpolation.
#pragma once

#include <vector>

#include "render/plane.h"

namespace quentara {

/// A rectangle of pixels.
struct Window {
  int top;
  int left;
  int height;
  int width;
};

/// Where each pixel of a rotated plane comes from, in single precision from left to right:
///   sourceX = m0 + c * x + s * y,  m0 = -c * width / 2 - s * height / 2 + floor(width / 2)
///   sourceY = m1 - s * x + c * y,  m1 = s * width / 2 - c * height / 2 + floor(height / 2)
/// with s and c the sine and cosine of -degrees. The terms of the columns are worked out once.
class Rotation {
 public:
  Rotation(int width, int height, float degrees);

  int width() const { return static_cast<int>(columnX_.size()); }
  int height() const { return height_; }

  /// For any y, and x in 0 .. width() - 1. Neither turns back as x grows.
  float SourceX(int x, int y) const { return columnX_[static_cast<std::size_t>(x)] + RowX(y); }
  float SourceY(int x, int y) const { return columnY_[static_cast<std::size_t>(x)] + RowY(y); }

  const float* columnX() const { return columnX_.data(); }
  const float* columnY() const { return columnY_.data(); }
  float RowX(int y) const { return sine_ * static_cast<float>(y); }
  float RowY(int y) const { return cosine_ * static_cast<float>(y); }

 private:
  int height_;
  float sine_;
  float cosine_;
  std::vector<float> columnX_;
  std::vector<float> columnY_;
};

/// A plane pasted into a black one of a rotation's size, wholly inside it.
struct PastedPlane {
  const BytePlane& plane;
  int top;
  int left;
};

/// The part of the rotated image that lies in `window`.
///
/// A pixel whose source lies outside 0 <= sourceX < width, 0 <= sourceY < height is 0. Any other is interpolated at
/// (sourceX - 0.5, sourceY - 0.5) between the four neighbours p00, p01, p10, p11, each clamped into the image:
///   a = p00 + (p01 - p00) * fx, b = p10 + (p11 - p10) * fx, result = trunc(a + (b - a) * fy), in single precision.
/// @param window  columns within the rotation's width; the rows may lie anywhere.
BytePlane RotateImage(const Rotation& rotation, const PastedPlane& image, const Window& window);

}  // namespace quentara
