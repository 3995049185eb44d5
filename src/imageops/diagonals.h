/// A plane laid out by its diagonals: those that fall to the right, from the upper right corner to the lower left one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "render/plane.h"

namespace quentara {

/// Where each sample goes. Diagonal d holds the pixels (x + d, x), one after the other by x.
class Diagonals {
 public:
  Diagonals(int height, int width);

  int first() const { return 1 - width_; }
  int end() const { return height_; }
  /// The columns of the pixels of a diagonal, which may lie outside the plane and hold none.
  int FirstColumn(int d) const { return std::max(0, -d); }
  int EndColumn(int d) const { return std::min(width_, height_ - d); }

  int MostPixels() const { return std::min(height_, width_); }  ///< of a diagonal

  /// The place of pixel (x + d, x) of a diagonal inside the plane.
  std::ptrdiff_t Place(int d, int x) const { return places_[static_cast<std::size_t>(d - first())] + x; }

  /// Turns a plane of the layout's size into its diagonals, and back.
  template <class T>
  void Gather(const Plane<T>& plane, T* diagonals) const {
    ForBlocks([&](int y, int x, int end, const std::ptrdiff_t* place) {
      for (const T* const row = Row(plane, y); x < end; ++x, --place) diagonals[*place + x] = row[x];
    });
  }
  template <class T>
  void Scatter(const T* diagonals, Plane<T>& plane) const {
    ForBlocks([&](int y, int x, int end, const std::ptrdiff_t* place) {
      for (T* const row = Row(plane, y); x < end; ++x, --place) row[x] = diagonals[*place + x];
    });
  }

 private:
  static constexpr int kBlock = 32;  ///< a block's part of each diagonal stays in the cache from row to row

  template <class RunOfRow>
  void ForBlocks(const RunOfRow& run) const {
    for (int top = 0; top < height_; top += kBlock)
      for (int left = 0; left < width_; left += kBlock)
        for (int y = top; y < std::min(top + kBlock, height_); ++y)
          run(y, left, std::min(left + kBlock, width_), places_.data() + (y - left - first()));
  }

  const int height_, width_;
  std::vector<std::ptrdiff_t> places_;  ///< by diagonal: where it starts, less its first column
};

}  // namespace quentara
