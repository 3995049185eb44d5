/// The window of (y, x) of all (y + dy, x + dx) with |dy| + |dx| <= radius, clipped to the plane.
#pragma once

#include <algorithm>

namespace quentara {

struct DiamondWindow {
  int radius;
  int height, width;  ///< of the plane

  /// Samples where no edge cuts the window: those of a square on its tip, and between them those of a smaller one.
  static constexpr int WholeSize(int radius) { return (radius + 1) * (radius + 1) + radius * radius; }

  bool CutsRows(int y) const { return y < radius || y >= height - radius; }
  bool CutsColumns(int x) const { return x < radius || x >= width - radius; }

  /// Samples of the window of (y, x). An edge cuts off a triangle, and two edges have a smaller one in common.
  int Size(int y, int x) const {
    const int top = radius - y, bottom = radius - (height - 1 - y), left = radius - x, right = radius - (width - 1 - x);
    return WholeSize(radius) - Cut(top) - Cut(bottom) - Cut(left) - Cut(right) + Common(top, left) +
           Common(top, right) + Common(bottom, left) + Common(bottom, right);
  }

  /// Rank of the median in the sorted window: upper of two middle samples, in the corners the lower.
  int MedianRank(int y, int x) const { return (Size(y, x) - (CutsRows(y) && CutsColumns(x) ? 1 : 0)) / 2; }

 private:
  static int Cut(int rows) { return rows > 0 ? rows * rows : 0; }
  int Common(int rows, int columns) const {
    const int side = rows + columns - radius - 1;
    return rows > 0 && columns > 0 && side > 0 ? side * (side + 1) / 2 : 0;
  }
};

}  // namespace quentara
