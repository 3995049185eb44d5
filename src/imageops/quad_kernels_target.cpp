// Built for instruction sets that multiply and add bytes in fours; the build sets KERNEL_TARGET and the flags.
#include <immintrin.h>

#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

constexpr int kLanes = 16;  // pixels of a register, with four samples each
constexpr int kRegisters = 4, kBlock = kRegisters * kLanes;
static_assert(kBlock <= kMostByteLanes);

// Calls block(x) for blocks of pixels, the last of which may overlap the one before it.
template <class Block>
inline __attribute__((always_inline)) void ForBlocks(int width, const Block& block) {
  for (int x = 0; x < width - kBlock; x += kBlock) block(x);
  block(width - kBlock);
}

__m512i Load(const void* p) {
  return _mm512_loadu_si512(p);
}

void Interleave(const uint8_t* const* rows, uint8_t* quads, int width) {
  ForBlocks(width, [&](int x) {
    const __m512i a = Load(rows[0] + x), b = Load(rows[1] + x), c = Load(rows[2] + x), d = Load(rows[3] + x);
    const __m512i abLow = _mm512_unpacklo_epi8(a, b), abHigh = _mm512_unpackhi_epi8(a, b);
    const __m512i cdLow = _mm512_unpacklo_epi8(c, d), cdHigh = _mm512_unpackhi_epi8(c, d);
    // Each has four pixels of every sixteen: the quarters are to be turned.
    const __m512i q0 = _mm512_unpacklo_epi16(abLow, cdLow), q1 = _mm512_unpackhi_epi16(abLow, cdLow);
    const __m512i q2 = _mm512_unpacklo_epi16(abHigh, cdHigh), q3 = _mm512_unpackhi_epi16(abHigh, cdHigh);
    const __m512i even01 = _mm512_shuffle_i32x4(q0, q1, 0x88), odd01 = _mm512_shuffle_i32x4(q0, q1, 0xdd);
    const __m512i even23 = _mm512_shuffle_i32x4(q2, q3, 0x88), odd23 = _mm512_shuffle_i32x4(q2, q3, 0xdd);
    uint8_t* const out = quads + 4 * x;
    _mm512_storeu_si512(out, _mm512_shuffle_i32x4(even01, even23, 0x88));
    _mm512_storeu_si512(out + 64, _mm512_shuffle_i32x4(odd01, odd23, 0x88));
    _mm512_storeu_si512(out + 128, _mm512_shuffle_i32x4(even01, even23, 0xdd));
    _mm512_storeu_si512(out + 192, _mm512_shuffle_i32x4(odd01, odd23, 0xdd));
  });
}

void MoveColumns(const uint8_t* __restrict entering, const uint8_t* __restrict leaving, uint16_t* __restrict columns,
                 int width) {
  for (int x = 0; x < width; ++x) columns[x] = static_cast<uint16_t>(columns[x] + entering[x] - leaving[x]);
}

// The sums of columns[x] .. columns[x + side - 1] for a block of pixels; 16 bits hold `most` columns.
void AddColumns(const uint16_t* columns, int side, int most, __m512i* sums) {
  for (int tap = 0; tap < side;) {
    __m512i low = _mm512_setzero_si512(), high = low;
    for (const int end = tap + most < side ? tap + most : side; tap < end; ++tap) {
      low = _mm512_add_epi16(low, Load(columns + tap));
      high = _mm512_add_epi16(high, Load(columns + tap + 2 * kLanes));
    }
    const __m512i parts[] = {low, high};
    for (int i = 0; i < kRegisters; ++i) {
      const __m256i part =
          i % 2 == 0 ? _mm512_castsi512_si256(parts[i / 2]) : _mm512_extracti64x4_epi64(parts[i / 2], 1);
      sums[i] = _mm512_add_epi32(sums[i], _mm512_cvtepu16_epi32(part));
    }
  }
}

// sum of |v - m| = sum of v - n * m + 2 * sum of max(m - v, 0): the first from sums of columns, the last by quads.
void DeviationOfBlock(const QuadRow& row, int x, const uint8_t* medians, const uint16_t* columns, const float* sizes,
                      float* out) {
  const __m512i ones = _mm512_set1_epi8(1);
  __m512i levels[kRegisters], below[kRegisters], all[kRegisters];
  for (int i = 0; i < kRegisters; ++i) {
    levels[i] = _mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(medians + x + kLanes * i)));
    below[i] = all[i] = _mm512_setzero_si512();
  }
  for (int line = 0; line < row.lineCount; ++line) {
    // What does not count does not lie below a median of 0, either.
    const QuadLine& quads = row.lines[line];
    const __mmask64 counted = (0xfull >> (4 - quads.counted)) * 0x1111111111111111ull;
    __m512i quadMedians[kRegisters];
    for (int i = 0; i < kRegisters; ++i)
      quadMedians[i] =
          _mm512_maskz_shuffle_epi8(counted, levels[i], _mm512_set4_epi32(0x0c0c0c0c, 0x08080808, 0x04040404, 0));
    const uint8_t* samples = quads.first + 4 * x;
    for (int left = quads.count; left > 0; --left, samples += quads.step)
#pragma GCC unroll 4
      for (int i = 0; i < kRegisters; ++i)
        below[i] = _mm512_dpbusd_epi32(below[i], _mm512_subs_epu8(quadMedians[i], Load(samples + 64 * i)), ones);
  }
  AddColumns(columns + x, row.side, 257 / row.rows, all);
  for (int i = 0; i < kRegisters; ++i) {
    const __m512 size = _mm512_loadu_ps(sizes + x + kLanes * i), depth = _mm512_cvtepi32_ps(below[i]);
    const __m512 rest = _mm512_mul_ps(size, _mm512_cvtepi32_ps(levels[i]));
    const __m512 sum = _mm512_sub_ps(_mm512_add_ps(_mm512_cvtepi32_ps(all[i]), _mm512_add_ps(depth, depth)), rest);
    _mm512_storeu_ps(out + x + kLanes * i, _mm512_div_ps(sum, size));
  }
}

void Deviation(const QuadRow& row, const uint8_t* medians, const uint16_t* columns, const float* sizes, float* out) {
  ForBlocks(row.width, [&](int x) { DeviationOfBlock(row, x, medians, columns, sizes, out); });
}

}  // namespace

extern const QuadKernels kQuadKernels;
const QuadKernels kQuadKernels = {Interleave, MoveColumns, Deviation};

}  // namespace quentara::KERNEL_TARGET
