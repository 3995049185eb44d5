/// Sixteen 16-bit counters in one AVX2 register; see lanes.h.
#pragma once

#include "imageops/lanes_common.h"

namespace quentara::KERNEL_TARGET {

struct Lanes {
  static constexpr int kCount = 16;
  __m256i v;

  LANES_INLINE Lanes Every(int value) { return {_mm256_set1_epi16(static_cast<short>(value))}; }
  LANES_INLINE Lanes Load(const int16_t* p) { return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))}; }
  /// Bytes, unsigned.
  LANES_INLINE Lanes Widened(const uint8_t* p) {
    return {_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
  }
  /// The differences of bytes, which lie in -128..127.
  LANES_INLINE Lanes SmallDifferences(const uint8_t* a, const uint8_t* b) {
    return {_mm256_cvtepi8_epi16(_mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a)),
                                              _mm_loadu_si128(reinterpret_cast<const __m128i*>(b))))};
  }
  LANES_INLINE_METHOD void Store(int16_t* p) const { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
};

LANES_FUNCTION Lanes operator+(Lanes a, Lanes b) {
  return {_mm256_add_epi16(a.v, b.v)};
}
LANES_FUNCTION Lanes operator-(Lanes a, Lanes b) {
  return {_mm256_sub_epi16(a.v, b.v)};
}
/// Unsigned: what a has above b, or 0.
LANES_FUNCTION Lanes Excess(Lanes a, Lanes b) {
  return {_mm256_subs_epu16(a.v, b.v)};
}
struct WideLanes {  ///< of 32 bits
  __m256i v;

  LANES_INLINE WideLanes None() { return {_mm256_setzero_si256()}; }
  LANES_INLINE_METHOD void Store(int32_t* p) const { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
};

LANES_FUNCTION WideLanes operator+(WideLanes a, WideLanes b) {
  return {_mm256_add_epi32(a.v, b.v)};
}
LANES_FUNCTION WideLanes operator-(WideLanes a, WideLanes b) {
  return {_mm256_sub_epi32(a.v, b.v)};
}
LANES_FUNCTION WideLanes WidenLow(Lanes a) {  ///< the first eight lanes
  return {_mm256_cvtepi16_epi32(_mm256_castsi256_si128(a.v))};
}
LANES_FUNCTION WideLanes WidenHigh(Lanes a) {
  return {_mm256_cvtepi16_epi32(_mm256_extracti128_si256(a.v, 1))};
}
/// Products of lanes, summed in pairs and added to.
LANES_FUNCTION WideLanes AddProducts(WideLanes sums, Lanes a, Lanes b) {
  return {_mm256_add_epi32(sums.v, _mm256_madd_epi16(a.v, b.v))};
}
LANES_FUNCTION __m128i Halved(__m256i a) {
  return _mm_add_epi32(_mm256_castsi256_si128(a), _mm256_extracti128_si256(a, 1));
}
LANES_FUNCTION __m128i Halved(WideLanes a) {
  return Halved(a.v);
}
LANES_FUNCTION void StoreHalved(__m256i a, uint32_t* p) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), Halved(a));
}

#ifndef __AVX512BW__

/// How many lanes are above the limit, both signed; the lanes do not fall.
LANES_FUNCTION size_t CountAbove(Lanes a, int limit) {
  const __m256i above = _mm256_cmpgt_epi16(a.v, _mm256_set1_epi16(static_cast<short>(limit)));
  return static_cast<size_t>(__builtin_popcount(static_cast<unsigned>(_mm256_movemask_epi8(above)))) / 2;
}
LANES_FUNCTION Lanes SmallerLanes(Lanes a, Lanes b) {
  return {_mm256_min_epi16(a.v, b.v)};
}
/// Where a candidate is above the count, it and its value take their places.
LANES_FUNCTION void KeepLarger(Lanes& counts, Lanes& values, Lanes candidates, Lanes theirValues) {
  values = {_mm256_blendv_epi8(values.v, theirValues.v, _mm256_cmpgt_epi16(candidates.v, counts.v))};
  counts = {_mm256_max_epi16(counts.v, candidates.v)};
}
/// The smallest of the values, which are not negative, in the lanes of the largest count.
LANES_FUNCTION int SmallestOfLargest(Lanes counts, Lanes values) {
  const __m128i halves = _mm_max_epi16(_mm256_castsi256_si128(counts.v), _mm256_extracti128_si256(counts.v, 1));
  const __m128i rest = _mm_minpos_epu16(_mm_sub_epi16(_mm_set1_epi16(0x7fff), halves));
  const __m256i most = _mm256_sub_epi16(_mm256_set1_epi16(0x7fff), _mm256_broadcastw_epi16(rest));
  const __m256i rarer = _mm256_cmpgt_epi16(most, counts.v);
  const __m256i kept = _mm256_or_si256(values.v, _mm256_and_si256(rarer, _mm256_set1_epi16(0x7fff)));
  const __m128i least = _mm_min_epi16(_mm256_castsi256_si128(kept), _mm256_extracti128_si256(kept, 1));
  return _mm_extract_epi16(_mm_minpos_epu16(least), 0);
}
/// A sum of lanes in four parts.
LANES_FUNCTION void StoreQuarters(WideLanes a, uint32_t* p) {
  StoreHalved(a.v, p);
}
/// Two sums of lanes, each in two parts: those of a in p[0] and p[2], those of b in p[1] and p[3].
LANES_FUNCTION void StoreTotals(WideLanes a, WideLanes b, uint32_t* p) {
  StoreHalved(_mm256_add_epi32(_mm256_unpacklo_epi32(a.v, b.v), _mm256_unpackhi_epi32(a.v, b.v)), p);
}

/// The widest there are.
using FineLanes = Lanes;
using FineProducts = WideLanes;

#endif

}  // namespace quentara::KERNEL_TARGET
