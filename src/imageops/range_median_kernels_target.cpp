// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
#include "imageops/byte_lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

// Registers of pixels that go together, so that an addition need not wait for the one before it.
constexpr int kParts = kBisectedPixels / kByteLanes;

// Calls take(i, v) for each sample v of the windows of part i.
template <class Take>
BYTE_LANES_INLINE void ForSamples(const WindowRow& row, int x, const Take& take) {
  const auto takeParts = [&](const uint8_t* samples) {
    for (int i = 0; i < kParts; ++i) take(i, LoadBytes(samples + i * kByteLanes));
  };
  const uint8_t* line = row.samples + x;
  if (row.side == 1) {
#pragma GCC unroll 4
    for (int y = 0; y < row.rows; ++y) takeParts(line + y * row.stride);
    return;
  }
  for (int y = 0; y < row.rows; ++y, line += row.stride)
#pragma GCC unroll 4
    for (int tap = 0; tap < row.side; ++tap) takeParts(line + tap);
}

// Out of line, as its loops need all registers. The median is the lowest value with `rank` samples up to it, which is
// the same as at most size - rank above it; the padding is above all values but 255, where the search ends anyway.
__attribute__((noinline)) void MedianOfPixels(const WindowRow& row, int x, const uint8_t* centre, int limit, int steps,
                                              const uint8_t* sizes, uint8_t* out) {
  const Bytes bias = EveryByte(kBisectionBias), size = EveryByte(row.rows * row.side);
  Bytes median[kParts], lowest[kParts], highest[kParts], below[kParts], above[kParts], most[kParts], tried[kParts];
  for (int i = 0; i < kParts; ++i) {
    const Bytes c = LoadBytes(centre + i * kByteLanes);
    median[i] = SaturatedDifference(c, EveryByte(limit));
    lowest[i] = median[i] ^ bias, highest[i] = SaturatedSum(c, EveryByte(limit)) ^ bias;
    below[i] = above[i] = EveryByte(0);
  }
  ForSamples(row, x, [&](int i, Bytes v) {
    below[i] = CountAbove(below[i], lowest[i], v), above[i] = CountAbove(above[i], v, highest[i]);
  });
  for (int i = 0; i < kParts; ++i) {
    const Bytes upTo = Smaller(size - above[i], LoadBytes(sizes + i * kByteLanes));  // without padding
    most[i] = (size - UpperMean(below[i], upTo)) ^ bias;
  }
  for (int step = (1 << steps) / 2; step > 0; step /= 2) {
    for (int i = 0; i < kParts; ++i) tried[i] = SaturatedSum(median[i], EveryByte(step - 1)) ^ bias, above[i] = bias;
    ForSamples(row, x, [&](int i, Bytes v) { above[i] = CountAbove(above[i], v, tried[i]); });
    for (int i = 0; i < kParts; ++i) median[i] = AddWhereAbove(median[i], EveryByte(step), above[i], most[i]);
  }
  for (int i = 0; i < kParts; ++i) StoreBytes(median[i], out + i * kByteLanes);
}

// The last pixels may overlap those before them.
void ByBisection(const WindowRow& row, const uint8_t* centre, int limit, int steps, const uint8_t* sizes,
                 uint8_t* out) {
  for (int i = 0; i < row.width; i += kBisectedPixels) {
    const int x = i < row.width - kBisectedPixels ? i : row.width - kBisectedPixels;
    MedianOfPixels(row, x, centre + x, limit, steps, sizes + x, out + x);
  }
}

}  // namespace

extern const RangeMedianKernels kRangeMedianKernels;
const RangeMedianKernels kRangeMedianKernels = {ByBisection};

}  // namespace quentara::KERNEL_TARGET
