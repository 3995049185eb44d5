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

// Out of line, as its loops need all registers.
__attribute__((noinline)) void DeviationOfRegister(const DiamondRow& row, int x, const uint8_t* medians,
                                                   const float* sizes, float* out) {
  constexpr int kMostSamples = 257;  // that 16-bit sums take
  const Bytes median = LoadBytes(medians);
  const int wholeSize = (row.radius + 1) * (row.radius + 1) + row.radius * row.radius;
  const Floats whole = EveryFloat(static_cast<float>(wholeSize));
  QuarterSums sums = NoQuarterSums(), levels = sums;
  for (int y = 0; y <= 2 * row.radius;) {
    ByteSums distances = NoSums();
    for (int samples = 0; y <= 2 * row.radius; ++y) {
      const int reach = y < row.radius ? y : 2 * row.radius - y, side = 2 * reach + 1;
      samples += side;
      if (samples > kMostSamples) break;
      const uint8_t* const line = row.rows[y] + row.radius - reach + x;
#pragma GCC unroll 2
      for (int tap = 0; tap < side; ++tap) {
        const Bytes v = LoadBytes(line + tap);
        distances = distances + (Larger(median, v) - Smaller(median, v));
      }
    }
    sums.Add(LowWords(distances), HighWords(distances));
  }
  levels.Add(LowWords(median), HighWords(median));
  for (int i = 0; i < 4; ++i) {
    // The padding's zeros are all as far off as the median is high. Whole numbers below 2^24: exact.
    const Floats size = LoadQuarter(sizes, i), inside = sums.quarters[i] - (whole - size) * levels.quarters[i];
    StoreQuarter(inside / size, out, i);
  }
}

void Deviation(const DiamondRow& row, const uint8_t* medians, const float* sizes, float* out) {
  for (int i = 0; i < row.width; i += kByteLanes) {
    const int x = i < row.width - kByteLanes ? i : row.width - kByteLanes;
    DeviationOfRegister(row, x, medians + x, sizes + x, out + x);
  }
}

}  // namespace

extern const DiamondKernels kDiamondKernels;
const DiamondKernels kDiamondKernels = {
    {nullptr, Median<1>, Median<2>, Median<3>, Median<4>, Median<5>, Median<6>, Median<7>}, Deviation};

}  // namespace quentara::KERNEL_TARGET
