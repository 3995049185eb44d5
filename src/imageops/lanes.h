/// Sixteen 16-bit counters at a time: one AVX2 register or a pair of SSE2 registers.
///
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET: nothing here is ever shared
/// between two sets.
#pragma once

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

#define LANES_INLINE_METHOD inline __attribute__((always_inline))
#define LANES_INLINE static LANES_INLINE_METHOD

namespace quentara::KERNEL_TARGET {

#ifdef __AVX2__

struct Lanes {
  __m256i v;
};
struct WideLanes {  ///< partial sums of 32 bits
  __m256i v;
};

LANES_INLINE Lanes LoadLanes(const int16_t* p) {
  return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))};
}
LANES_INLINE void StoreLanes(Lanes a, int16_t* p) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), a.v);
}
LANES_INLINE Lanes WidenBytes(const uint8_t* p) {
  return {_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
}
LANES_INLINE Lanes operator+(Lanes a, Lanes b) {
  return {_mm256_add_epi16(a.v, b.v)};
}
LANES_INLINE Lanes operator-(Lanes a, Lanes b) {
  return {_mm256_sub_epi16(a.v, b.v)};
}
/// Unsigned: what a has above b, or 0.
LANES_INLINE Lanes Excess(Lanes a, Lanes b) {
  return {_mm256_subs_epu16(a.v, b.v)};
}

/// The differences of sixteen bytes each, which lie in -128..127.
LANES_INLINE Lanes SmallDifferences(const uint8_t* a, const uint8_t* b) {
  const __m128i difference = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a)),
                                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(b)));
  return {_mm256_cvtepi8_epi16(difference)};
}

/// How many lanes are above the limit, both signed; the lanes do not fall.
LANES_INLINE size_t CountAbove(Lanes a, int limit) {
  const __m256i above = _mm256_cmpgt_epi16(a.v, _mm256_set1_epi16(static_cast<short>(limit)));
  return static_cast<size_t>(__builtin_popcount(static_cast<unsigned>(_mm256_movemask_epi8(above)))) / 2;
}

LANES_INLINE Lanes operator&(Lanes a, Lanes b) {
  return {_mm256_and_si256(a.v, b.v)};
}
LANES_INLINE Lanes operator|(Lanes a, Lanes b) {
  return {_mm256_or_si256(a.v, b.v)};
}
/// The lanes of a where the mask has none of its bits.
LANES_INLINE Lanes Without(Lanes a, Lanes mask) {
  return {_mm256_andnot_si256(mask.v, a.v)};
}
/// All bits of the lanes in which a is above b, both signed.
LANES_INLINE Lanes IsAbove(Lanes a, Lanes b) {
  return {_mm256_cmpgt_epi16(a.v, b.v)};
}
LANES_INLINE Lanes LargerLanes(Lanes a, Lanes b) {
  return {_mm256_max_epi16(a.v, b.v)};
}
LANES_INLINE Lanes EveryLane(int value) {
  return {_mm256_set1_epi16(static_cast<short>(value))};
}
LANES_INLINE Lanes SmallerLanes(Lanes a, Lanes b) {
  return {_mm256_min_epi16(a.v, b.v)};
}
LANES_INLINE int SmallestLane(Lanes a) {  ///< of lanes that are not negative
  const __m128i least = _mm_min_epi16(_mm256_castsi256_si128(a.v), _mm256_extracti128_si256(a.v, 1));
  return _mm_extract_epi16(_mm_minpos_epu16(least), 0);
}
LANES_INLINE int LargestLane(Lanes a) {
  const __m128i most = _mm_max_epi16(_mm256_castsi256_si128(a.v), _mm256_extracti128_si256(a.v, 1));
  return 0x7fff - _mm_extract_epi16(_mm_minpos_epu16(_mm_sub_epi16(_mm_set1_epi16(0x7fff), most)), 0);
}

/// Products of lanes summed in pairs.
LANES_INLINE WideLanes MultiplyAdd(Lanes a, Lanes b) {
  return {_mm256_madd_epi16(a.v, b.v)};
}
LANES_INLINE WideLanes NoWideLanes() {
  return {_mm256_setzero_si256()};
}
LANES_INLINE WideLanes WidenLow(Lanes a) {  ///< the first eight lanes
  return {_mm256_cvtepi16_epi32(_mm256_castsi256_si128(a.v))};
}
LANES_INLINE WideLanes WidenHigh(Lanes a) {
  return {_mm256_cvtepi16_epi32(_mm256_extracti128_si256(a.v, 1))};
}
LANES_INLINE void StoreWideLanes(WideLanes a, int32_t* p) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), a.v);
}
LANES_INLINE WideLanes operator-(WideLanes a, WideLanes b) {
  return {_mm256_sub_epi32(a.v, b.v)};
}
LANES_INLINE WideLanes operator+(WideLanes a, WideLanes b) {
  return {_mm256_add_epi32(a.v, b.v)};
}
LANES_INLINE __m128i Halved(WideLanes a) {
  return _mm_add_epi32(_mm256_castsi256_si128(a.v), _mm256_extracti128_si256(a.v, 1));
}

#else

struct Lanes {
  __m128i low, high;
};
struct WideLanes {  ///< partial sums of 32 bits
  __m128i low, high;
};

LANES_INLINE Lanes LoadLanes(const int16_t* p) {
  const __m128i* const v = reinterpret_cast<const __m128i*>(p);
  return {_mm_loadu_si128(v), _mm_loadu_si128(v + 1)};
}
LANES_INLINE void StoreLanes(Lanes a, int16_t* p) {
  __m128i* const v = reinterpret_cast<__m128i*>(p);
  _mm_storeu_si128(v, a.low), _mm_storeu_si128(v + 1, a.high);
}
LANES_INLINE Lanes WidenBytes(const uint8_t* p) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), zero = _mm_setzero_si128();
  return {_mm_unpacklo_epi8(bytes, zero), _mm_unpackhi_epi8(bytes, zero)};
}
LANES_INLINE Lanes operator+(Lanes a, Lanes b) {
  return {_mm_add_epi16(a.low, b.low), _mm_add_epi16(a.high, b.high)};
}
LANES_INLINE Lanes operator-(Lanes a, Lanes b) {
  return {_mm_sub_epi16(a.low, b.low), _mm_sub_epi16(a.high, b.high)};
}
/// Unsigned: what a has above b, or 0.
LANES_INLINE Lanes Excess(Lanes a, Lanes b) {
  return {_mm_subs_epu16(a.low, b.low), _mm_subs_epu16(a.high, b.high)};
}

/// The differences of sixteen bytes each, which lie in -128..127.
LANES_INLINE Lanes SmallDifferences(const uint8_t* a, const uint8_t* b) {
  const __m128i difference = _mm_sub_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a)),
                                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(b)));
  return {_mm_srai_epi16(_mm_unpacklo_epi8(difference, difference), 8),
          _mm_srai_epi16(_mm_unpackhi_epi8(difference, difference), 8)};
}

/// How many lanes are above the limit, both signed; the lanes do not fall.
LANES_INLINE size_t CountAbove(Lanes a, int limit) {
  const __m128i limits = _mm_set1_epi16(static_cast<short>(limit));
  const __m128i above = _mm_packs_epi16(_mm_cmpgt_epi16(a.low, limits), _mm_cmpgt_epi16(a.high, limits));
  // Without an instruction that counts bits, the first one is quicker to find.
  return static_cast<size_t>(16 - __builtin_ctz(static_cast<unsigned>(_mm_movemask_epi8(above)) | 0x10000u));
}

LANES_INLINE Lanes operator&(Lanes a, Lanes b) {
  return {_mm_and_si128(a.low, b.low), _mm_and_si128(a.high, b.high)};
}
LANES_INLINE Lanes operator|(Lanes a, Lanes b) {
  return {_mm_or_si128(a.low, b.low), _mm_or_si128(a.high, b.high)};
}
/// The lanes of a where the mask has none of its bits.
LANES_INLINE Lanes Without(Lanes a, Lanes mask) {
  return {_mm_andnot_si128(mask.low, a.low), _mm_andnot_si128(mask.high, a.high)};
}
/// All bits of the lanes in which a is above b, both signed.
LANES_INLINE Lanes IsAbove(Lanes a, Lanes b) {
  return {_mm_cmpgt_epi16(a.low, b.low), _mm_cmpgt_epi16(a.high, b.high)};
}
LANES_INLINE Lanes LargerLanes(Lanes a, Lanes b) {
  return {_mm_max_epi16(a.low, b.low), _mm_max_epi16(a.high, b.high)};
}
LANES_INLINE Lanes EveryLane(int value) {
  const __m128i v = _mm_set1_epi16(static_cast<short>(value));
  return {v, v};
}
LANES_INLINE Lanes SmallerLanes(Lanes a, Lanes b) {
  return {_mm_min_epi16(a.low, b.low), _mm_min_epi16(a.high, b.high)};
}
LANES_INLINE int SmallestLane(Lanes a) {  ///< of lanes that are not negative
  __m128i least = _mm_min_epi16(a.low, a.high);
  least = _mm_min_epi16(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(1, 0, 3, 2)));
  least = _mm_min_epi16(least, _mm_shuffle_epi32(least, _MM_SHUFFLE(2, 3, 0, 1)));
  least = _mm_min_epi16(least, _mm_shufflelo_epi16(least, _MM_SHUFFLE(2, 3, 0, 1)));
  return _mm_cvtsi128_si32(least) & 0xffff;
}
LANES_INLINE int LargestLane(Lanes a) {
  __m128i most = _mm_max_epi16(a.low, a.high);
  most = _mm_max_epi16(most, _mm_shuffle_epi32(most, _MM_SHUFFLE(1, 0, 3, 2)));
  most = _mm_max_epi16(most, _mm_shuffle_epi32(most, _MM_SHUFFLE(2, 3, 0, 1)));
  most = _mm_max_epi16(most, _mm_shufflelo_epi16(most, _MM_SHUFFLE(2, 3, 0, 1)));
  return static_cast<int16_t>(_mm_cvtsi128_si32(most));
}

/// Products of lanes summed in pairs.
LANES_INLINE WideLanes MultiplyAdd(Lanes a, Lanes b) {
  return {_mm_madd_epi16(a.low, b.low), _mm_madd_epi16(a.high, b.high)};
}
LANES_INLINE WideLanes NoWideLanes() {
  return {_mm_setzero_si128(), _mm_setzero_si128()};
}
LANES_INLINE WideLanes WidenHalf(__m128i a) {
  return {_mm_srai_epi32(_mm_unpacklo_epi16(a, a), 16), _mm_srai_epi32(_mm_unpackhi_epi16(a, a), 16)};
}
LANES_INLINE WideLanes WidenLow(Lanes a) {  ///< the first eight lanes
  return WidenHalf(a.low);
}
LANES_INLINE WideLanes WidenHigh(Lanes a) {
  return WidenHalf(a.high);
}
LANES_INLINE void StoreWideLanes(WideLanes a, int32_t* p) {
  __m128i* const v = reinterpret_cast<__m128i*>(p);
  _mm_storeu_si128(v, a.low), _mm_storeu_si128(v + 1, a.high);
}
LANES_INLINE WideLanes operator-(WideLanes a, WideLanes b) {
  return {_mm_sub_epi32(a.low, b.low), _mm_sub_epi32(a.high, b.high)};
}
LANES_INLINE WideLanes operator+(WideLanes a, WideLanes b) {
  return {_mm_add_epi32(a.low, b.low), _mm_add_epi32(a.high, b.high)};
}
LANES_INLINE __m128i Halved(WideLanes a) {
  return _mm_add_epi32(a.low, a.high);
}

#endif

/// Sixteen bytes.
LANES_INLINE __m128i LoadBytes(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}
LANES_INLINE void StoreBytes(__m128i a, uint8_t* p) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(p), a);
}
/// How many of sixteen bytes, which do not fall, are not above the limit, 0..255.
LANES_INLINE size_t CountNotAbove(__m128i bytes, int limit) {
  const __m128i limits = _mm_set1_epi8(static_cast<char>(limit));
  const __m128i notAbove = _mm_cmpeq_epi8(_mm_max_epu8(bytes, limits), limits);
  return static_cast<size_t>(__builtin_ctz(~static_cast<unsigned>(_mm_movemask_epi8(notAbove))));
}

LANES_INLINE int Total(WideLanes a) {
  __m128i s = Halved(a);
  s = _mm_add_epi32(s, _mm_shuffle_epi32(s, _MM_SHUFFLE(1, 0, 3, 2)));
  s = _mm_add_epi32(s, _mm_shuffle_epi32(s, _MM_SHUFFLE(2, 3, 0, 1)));
  return _mm_cvtsi128_si32(s);
}

}  // namespace quentara::KERNEL_TARGET
