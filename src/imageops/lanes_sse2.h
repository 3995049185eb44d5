/// Sixteen 16-bit counters in two SSE2 registers; see lanes.h.
#pragma once

#include "imageops/lanes_common.h"

namespace quentara::KERNEL_TARGET {

struct Lanes {
  static constexpr int kCount = 16;
  __m128i low, high;

  LANES_INLINE Lanes Every(int value) {
    const __m128i v = _mm_set1_epi16(static_cast<short>(value));
    return {v, v};
  }
  LANES_INLINE Lanes Load(const int16_t* p) {
    const __m128i* const v = reinterpret_cast<const __m128i*>(p);
    return {_mm_loadu_si128(v), _mm_loadu_si128(v + 1)};
  }
  /// Bytes, unsigned.
  LANES_INLINE Lanes Widened(const uint8_t* p) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), zero = _mm_setzero_si128();
    return {_mm_unpacklo_epi8(bytes, zero), _mm_unpackhi_epi8(bytes, zero)};
  }
  /// The differences of bytes, which lie in -128..127.
  LANES_INLINE Lanes SmallDifferences(const uint8_t* a, const uint8_t* b) {
    const __m128i difference = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a)),
                                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(b)));
    return {_mm_srai_epi16(_mm_unpacklo_epi8(difference, difference), 8),
            _mm_srai_epi16(_mm_unpackhi_epi8(difference, difference), 8)};
  }
  LANES_INLINE_METHOD void Store(int16_t* p) const {
    __m128i* const v = reinterpret_cast<__m128i*>(p);
    _mm_storeu_si128(v, low), _mm_storeu_si128(v + 1, high);
  }
};

LANES_FUNCTION Lanes operator+(Lanes a, Lanes b) {
  return {_mm_add_epi16(a.low, b.low), _mm_add_epi16(a.high, b.high)};
}
LANES_FUNCTION Lanes operator-(Lanes a, Lanes b) {
  return {_mm_sub_epi16(a.low, b.low), _mm_sub_epi16(a.high, b.high)};
}
/// Unsigned: what a has above b, or 0.
LANES_FUNCTION Lanes Excess(Lanes a, Lanes b) {
  return {_mm_subs_epu16(a.low, b.low), _mm_subs_epu16(a.high, b.high)};
}
LANES_FUNCTION Lanes SmallerLanes(Lanes a, Lanes b) {
  return {_mm_min_epi16(a.low, b.low), _mm_min_epi16(a.high, b.high)};
}
/// How many lanes are above the limit, both signed; the lanes do not fall.
LANES_FUNCTION size_t CountAbove(Lanes a, int limit) {
  const __m128i limits = _mm_set1_epi16(static_cast<short>(limit));
  const __m128i above = _mm_packs_epi16(_mm_cmpgt_epi16(a.low, limits), _mm_cmpgt_epi16(a.high, limits));
  // Without an instruction that counts bits, the first one is quicker to find.
  return static_cast<size_t>(16 - __builtin_ctz(static_cast<unsigned>(_mm_movemask_epi8(above)) | 0x10000u));
}

LANES_FUNCTION __m128i Merged(__m128i mask, __m128i a, __m128i b) {  // a where the mask is set
  return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}
/// Where a candidate is above the count, it and its value take their places.
LANES_FUNCTION void KeepLarger(Lanes& counts, Lanes& values, Lanes candidates, Lanes theirValues) {
  values = {Merged(_mm_cmpgt_epi16(candidates.low, counts.low), theirValues.low, values.low),
            Merged(_mm_cmpgt_epi16(candidates.high, counts.high), theirValues.high, values.high)};
  counts = {_mm_max_epi16(counts.low, candidates.low), _mm_max_epi16(counts.high, candidates.high)};
}
/// The smallest of the values, which are not negative, in the lanes of the largest count.
LANES_FUNCTION int SmallestOfLargest(Lanes counts, Lanes values) {
  __m128i most = _mm_max_epi16(counts.low, counts.high);
  most = _mm_max_epi16(most, _mm_shuffle_epi32(most, _MM_SHUFFLE(1, 0, 3, 2)));
  most = _mm_max_epi16(most, _mm_shuffle_epi32(most, _MM_SHUFFLE(2, 3, 0, 1)));
  most = _mm_max_epi16(most, _mm_shufflelo_epi16(most, _MM_SHUFFLE(2, 3, 0, 1)));
  most = _mm_shuffle_epi32(_mm_shufflelo_epi16(most, 0), 0);
  const __m128i no = _mm_set1_epi16(0x7fff);
  __m128i least = _mm_min_epi16(Merged(_mm_cmpeq_epi16(counts.low, most), values.low, no),
                                Merged(_mm_cmpeq_epi16(counts.high, most), values.high, no));
  least = _mm_min_epi16(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(1, 0, 3, 2)));
  least = _mm_min_epi16(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(2, 3, 0, 1)));
  least = _mm_min_epi16(least, _mm_shufflelo_epi16(least, _MM_SHUFFLE(2, 3, 0, 1)));
  return _mm_cvtsi128_si32(least) & 0xffff;
}

struct WideLanes {  ///< of 32 bits
  __m128i low, high;

  LANES_INLINE WideLanes None() { return {_mm_setzero_si128(), _mm_setzero_si128()}; }
  LANES_INLINE_METHOD void Store(int32_t* p) const {
    __m128i* const v = reinterpret_cast<__m128i*>(p);
    _mm_storeu_si128(v, low), _mm_storeu_si128(v + 1, high);
  }
};

LANES_FUNCTION WideLanes operator+(WideLanes a, WideLanes b) {
  return {_mm_add_epi32(a.low, b.low), _mm_add_epi32(a.high, b.high)};
}
LANES_FUNCTION WideLanes operator-(WideLanes a, WideLanes b) {
  return {_mm_sub_epi32(a.low, b.low), _mm_sub_epi32(a.high, b.high)};
}
LANES_FUNCTION WideLanes WidenHalf(__m128i a) {
  return {_mm_srai_epi32(_mm_unpacklo_epi16(a, a), 16), _mm_srai_epi32(_mm_unpackhi_epi16(a, a), 16)};
}
LANES_FUNCTION WideLanes WidenLow(Lanes a) {  ///< the first eight lanes
  return WidenHalf(a.low);
}
LANES_FUNCTION WideLanes WidenHigh(Lanes a) {
  return WidenHalf(a.high);
}
/// Products of lanes, summed in pairs and added to.
LANES_FUNCTION WideLanes AddProducts(WideLanes sums, Lanes a, Lanes b) {
  return sums + WideLanes{_mm_madd_epi16(a.low, b.low), _mm_madd_epi16(a.high, b.high)};
}
LANES_FUNCTION __m128i Halved(WideLanes a) {
  return _mm_add_epi32(a.low, a.high);
}
/// A sum of lanes in four parts.
LANES_FUNCTION void StoreQuarters(WideLanes a, uint32_t* p) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), Halved(a));
}
/// Two sums of lanes, each in two parts: those of a in p[0] and p[2], those of b in p[1] and p[3].
LANES_FUNCTION void StoreTotals(WideLanes a, WideLanes b, uint32_t* p) {
  const __m128i first = Halved(a), second = Halved(b);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p),
                   _mm_add_epi32(_mm_unpacklo_epi32(first, second), _mm_unpackhi_epi32(first, second)));
}

/// The widest there are.
using FineLanes = Lanes;
using FineProducts = WideLanes;

}  // namespace quentara::KERNEL_TARGET
