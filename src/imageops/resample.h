/// Changing the size of a plane.
#pragma once

#include "render/plane.h"

namespace quentara {

/// The plane at another size, by bilinear interpolation in single precision, truncated.
///
/// With kx = plane.cols() / width and ky = plane.rows() / height, the pixel (y, x) of the result lies at sx = kx * x -
/// 0.5 and sy = ky * y - 0.5. With fx, fy the fractions of sx, sy above their floors and p00, p01, p10, p11 the samples
/// there and one further, each index clamped into the plane:
///   a = p00 + (p01 - p00) * fx, b = p10 + (p11 - p10) * fx, result = trunc(a + (b - a) * fy), limited to 0..255.
///
/// @param plane   samples 0..255, of any size but empty.
/// @param height  rows of the result, >= 1.
/// @param width   columns of the result, >= 1.
BytePlane ResampleLuma(const BytePlane& plane, int height, int width);

}  // namespace quentara
