// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// Small diamond windows, as many pixels at a time as a register holds bytes.
#include "imageops/byte_lanes.h"
#include "imageops/sorted_bytes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

struct Place {
  int row, column;
};

/// Where sample i of a diamond lies, counted row by row.
constexpr Place PlaceOf(int radius, int i) {
  int row = 0, first = radius;
  for (; i >= 2 * (radius - first) + 1; ++row) {
    i -= 2 * (radius - first) + 1;
    first += row < radius ? -1 : 1;
  }
  return {row, first + i};
}

template <int radius, int first, int n>
BYTE_LANES_INLINE Sorted<n> SortedSamples(const uint8_t* const* rows, int x) {
  if constexpr (n == 1) {
    constexpr Place kPlace = PlaceOf(radius, first);
    return {{LoadBytes(rows[kPlace.row] + kPlace.column + x)}};
  } else {
    constexpr int kHalf = (n + 1) / 2;
    return Merged(SortedSamples<radius, first, kHalf>(rows, x),
                  SortedSamples<radius, first + kHalf, n - kHalf>(rows, x));
  }
}

// The last register may overlap the one before it.
template <int radius>
void Median(const DiamondRow& row, uint8_t* out) {
  constexpr int kHalf = radius * (radius + 1);
  for (int x = 0; x < row.width; x += kByteLanes) {
    const int start = x < row.width - kByteLanes ? x : row.width - kByteLanes;
    const auto upper = SortedSamples<radius, 0, kHalf + 1>(row.rows, start);
    const auto lower = SortedSamples<radius, kHalf + 1, kHalf>(row.rows, start);
    StoreBytes(MedianOf(upper, lower), out + start);
  }
}

}  // namespace

extern const DiamondKernels kDiamondKernels;
const DiamondKernels kDiamondKernels = {
    {nullptr, Median<1>, Median<2>, Median<3>, Median<4>, Median<5>, Median<6>, Median<7>}};

}  // namespace quentara::KERNEL_TARGET
