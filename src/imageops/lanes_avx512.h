/// Thirty-two 16-bit counters in one AVX-512 register; see lanes.h.
#pragma once

#include "imageops/lanes_avx2.h"

namespace quentara::KERNEL_TARGET {

LANES_FUNCTION size_t CountAbove(Lanes a, int limit) {
  const __mmask16 above = _mm256_cmpgt_epi16_mask(a.v, _mm256_set1_epi16(static_cast<short>(limit)));
  return static_cast<size_t>(__builtin_popcount(above));
}

struct FineLanes {
  static constexpr int kCount = 32;
  __m512i v;

  LANES_INLINE FineLanes Every(int value) { return {_mm512_set1_epi16(static_cast<short>(value))}; }
  LANES_INLINE FineLanes Load(const int16_t* p) { return {_mm512_loadu_si512(p)}; }
  LANES_INLINE FineLanes Widened(const uint8_t* p) {
    return {_mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)))};
  }
  LANES_INLINE FineLanes SmallDifferences(const uint8_t* a, const uint8_t* b) {
    return {_mm512_cvtepi8_epi16(_mm256_sub_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a)),
                                                 _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b))))};
  }
  LANES_INLINE_METHOD void Store(int16_t* p) const { _mm512_storeu_si512(p, v); }
};

LANES_FUNCTION FineLanes operator+(FineLanes a, FineLanes b) {
  return {_mm512_add_epi16(a.v, b.v)};
}
LANES_FUNCTION FineLanes operator-(FineLanes a, FineLanes b) {
  return {_mm512_sub_epi16(a.v, b.v)};
}
LANES_FUNCTION FineLanes SmallerLanes(FineLanes a, FineLanes b) {
  return {_mm512_min_epi16(a.v, b.v)};
}
LANES_FUNCTION void KeepLarger(FineLanes& counts, FineLanes& values, FineLanes candidates, FineLanes theirValues) {
  values = {_mm512_mask_mov_epi16(values.v, _mm512_cmpgt_epi16_mask(candidates.v, counts.v), theirValues.v)};
  counts = {_mm512_max_epi16(counts.v, candidates.v)};
}
LANES_FUNCTION int SmallestOfLargest(FineLanes counts, FineLanes values) {
  const __m256i pairs = _mm256_max_epi16(_mm512_castsi512_si256(counts.v), _mm512_extracti64x4_epi64(counts.v, 1));
  const __m128i quarters = _mm_max_epi16(_mm256_castsi256_si128(pairs), _mm256_extracti128_si256(pairs, 1));
  const __m128i rest = _mm_minpos_epu16(_mm_sub_epi16(_mm_set1_epi16(0x7fff), quarters));
  const __m512i most = _mm512_broadcastw_epi16(_mm_sub_epi16(_mm_set1_epi16(0x7fff), rest));
  const __mmask32 rarer = _mm512_cmpgt_epi16_mask(most, counts.v);
  const __m512i kept = _mm512_mask_mov_epi16(values.v, rarer, _mm512_set1_epi16(0x7fff));
  const __m256i least = _mm256_min_epi16(_mm512_castsi512_si256(kept), _mm512_extracti64x4_epi64(kept, 1));
  return _mm_extract_epi16(
      _mm_minpos_epu16(_mm_min_epi16(_mm256_castsi256_si128(least), _mm256_extracti128_si256(least, 1))), 0);
}

struct FineProducts {
  __m512i v;

  LANES_INLINE FineProducts None() { return {_mm512_setzero_si512()}; }
};

LANES_FUNCTION FineProducts AddProducts(FineProducts sums, FineLanes a, FineLanes b) {
  return {_mm512_dpwssd_epi32(sums.v, a.v, b.v)};
}
LANES_FUNCTION void StoreQuarters(FineProducts a, uint32_t* p) {
  StoreHalved(_mm256_add_epi32(_mm512_castsi512_si256(a.v), _mm512_extracti64x4_epi64(a.v, 1)), p);
}
LANES_FUNCTION void StoreTotals(FineProducts a, FineProducts b, uint32_t* p) {
  const __m512i pairs = _mm512_add_epi32(_mm512_unpacklo_epi32(a.v, b.v), _mm512_unpackhi_epi32(a.v, b.v));
  StoreHalved(_mm256_add_epi32(_mm512_castsi512_si256(pairs), _mm512_extracti64x4_epi64(pairs, 1)), p);
}

}  // namespace quentara::KERNEL_TARGET
