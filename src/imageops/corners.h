/// The pixels of a plane that are near to two of its edges.
#pragma once

#include <algorithm>

#include "render/plane.h"

namespace quentara {

/// Sets the pixels of `result` within `radius` of two edges of the plane to those of filter(corner, filtered), which is
/// called with the blocks of `plane` that these pixels depend on.
/// @param plane  at least 2 * radius rows and columns.
template <class Filter>
void FilterCorners(int radius, const BytePlane& plane, const Filter& filter, ByteRows result) {
  const int side = 2 * radius, bottom = plane.rows() - side, right = plane.cols() - side;
  BytePlane corner(side, side), filtered(side, side);
  for (const int top : {0, bottom}) {
    const int y0 = top == 0 ? 0 : radius;
    const int first = std::max(top + y0, result.first), end = std::min(top + y0 + radius, result.end());
    if (first >= end) continue;
    for (const int left : {0, right}) {
      for (int y = 0; y < side; ++y) std::copy_n(Row(plane, top + y) + left, side, Row(corner, y));
      filter(corner, filtered);
      const int x0 = left == 0 ? 0 : radius;
      for (int y = first; y < end; ++y) std::copy_n(Row(filtered, y - top) + x0, radius, Row(result, y) + left + x0);
    }
  }
}

}  // namespace quentara
