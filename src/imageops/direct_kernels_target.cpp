// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
#include "imageops/byte_lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

static_assert(kByteLanes <= kMostByteLanes);

int Smaller(int a, int b) {
  return a < b ? a : b;
}

// Calls block(x, levels + x, out + x) for registers of pixels, the last of them through memory that holds a whole one.
template <class Block>
BYTE_LANES_INLINE void ForBlocks(int width, const uint8_t* levels, uint8_t* out, const Block& block) {
  uint8_t lastLevels[kByteLanes] = {}, lastOut[kByteLanes];
  for (int x = 0; x < width; x += kByteLanes) {
    const bool whole = x + kByteLanes <= width;
    if (!whole)
      for (int i = 0; x + i < width; ++i) lastLevels[i] = levels[x + i];
    block(x, whole ? levels + x : lastLevels, whole ? out + x : lastOut);
    if (!whole)
      for (int i = 0; x + i < width; ++i) out[x + i] = lastOut[i];
  }
}

/// Windows as lines of taps, down their columns or along their rows, whichever are longer.
struct Lines {
  int count, taps;
  ptrdiff_t toNextLine, toNextTap;
};

Lines LinesOf(const WindowRow& row) {
  if (row.rows > row.side) return {row.side, row.rows, 1, row.stride};
  return {row.rows, row.side, row.stride, 1};
}

BYTE_LANES_INLINE Words MeansOf(Words counts, Words sums, Words lowest) {
  const auto mean = [](Floats count, Floats sum, Floats low) {
    return (sum + count * low) / count + EveryFloat(0.5f);  // the sum is below 2^24: exact
  };
  return PackFloats(mean(LowFloats(counts), LowFloats(sums), LowFloats(lowest)),
                    mean(HighFloats(counts), HighFloats(sums), HighFloats(lowest)));
}

// The functions for one block stay out of line: their loops need all registers.
__attribute__((noinline)) void RangeMeanOfBlock(const WindowRow& row, const Lines& lines, int x, const uint8_t* centre,
                                                int limit, const uint16_t* outside, uint8_t* out) {
  const Bytes one = EveryByte(1), reach = EveryByte(limit);
  const Bytes lowest = SaturatedDifference(LoadBytes(centre), reach);
  const Bytes highest = SaturatedSum(LoadBytes(centre), reach);
  const Bytes span = highest - lowest + one;                             // how many values are near
  const int most = 255 / (2 * limit + 1), mostLines = 255 / lines.taps;  // that bytes add up and count
  ByteSums depths = NoSums(), counts = NoSums();
  for (int y = 0; y < lines.count;) {
    Bytes count = EveryByte(0);
    for (const int end = Smaller(y + mostLines, lines.count); y < end; ++y) {
      const uint8_t* sample = row.samples + x + y * lines.toNextLine;
      for (int left = lines.taps; left > 0; left -= most) {
        Bytes depth = EveryByte(0);
#pragma GCC unroll 2
        for (int taps = Smaller(left, most); taps > 0; --taps, sample += lines.toNextTap) {
          // Wraps for values above the highest, so that either side of the range leaves nothing of the span.
          const Bytes inside = SaturatedDifference(span, highest - LoadBytes(sample));
          depth = depth + inside;
          count = count + Smaller(inside, one);
        }
        depths = depths + depth;
      }
    }
    counts = counts + count;
  }

  // A depth is v - lowest + 1. The padding's zeros are counted where a range begins at 0, with a depth of 1.
  const auto means = [&](Words n, Words sum, Words low, Words columns) {
    return MeansOf(n - WhereZero(low, columns * EveryWord(row.rows)), sum - n, low);
  };
  StoreBytes(PackWords(means(LowWords(counts), LowWords(depths), LowWords(lowest), LoadLowWords(outside)),
                       means(HighWords(counts), HighWords(depths), HighWords(lowest), LoadHighWords(outside))),
             out);
}

void RangeMean(const WindowRow& row, const uint8_t* centre, int limit, const uint16_t* outside, uint8_t* out) {
  const Lines lines = LinesOf(row);
  ForBlocks(row.width, centre, out, [&](int x, const uint8_t* blockCentre, uint8_t* blockOut) {
    RangeMeanOfBlock(row, lines, x, blockCentre, limit, outside + x, blockOut);
  });
}

}  // namespace

extern const DirectKernels kDirectKernels;
const DirectKernels kDirectKernels = {RangeMean};

}  // namespace quentara::KERNEL_TARGET
