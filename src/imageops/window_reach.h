/// How far a rectangular window reaches from its centre.
#pragma once

#include <algorithm>

#include "imageops/line_direction.h"

namespace quentara {

/// The window of (y, x): rows y - rows .. y + rows, columns x - columns .. x + columns, clipped to the plane.
struct WindowReach {
  int rows;
  int columns;
};

inline WindowReach SquareReach(int radius) {
  return {radius, radius};
}

inline WindowReach LineReach(int radius, LineDirection direction) {
  return direction == LineDirection::Vertical ? WindowReach{radius, 0} : WindowReach{0, radius};
}

/// The samples of a window that no edge cuts.
inline int SampleCount(WindowReach reach) {
  return (2 * reach.rows + 1) * (2 * reach.columns + 1);
}

/// How many of position - reach .. position + reach lie in 0 .. size - 1.
inline int ClippedExtent(int position, int reach, int size) {
  return std::min(position + reach, size - 1) - std::max(position - reach, 0) + 1;
}

/// Rank of the median in the sorted window of (y, x): upper of two middle samples, in the corners the lower.
inline int MedianRank(int y, int x, int height, int width, WindowReach reach) {
  const int count = ClippedExtent(y, reach.rows, height) * ClippedExtent(x, reach.columns, width);
  const bool corner = (y < reach.rows || y >= height - reach.rows) && (x < reach.columns || x >= width - reach.columns);
  return corner ? (count - 1) / 2 : count / 2;
}

}  // namespace quentara
