/// What the lanes of all instruction sets share; see lanes.h.
#pragma once

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

#define LANES_INLINE_METHOD inline __attribute__((always_inline))
#define LANES_INLINE static LANES_INLINE_METHOD
#define LANES_FUNCTION [[maybe_unused]] LANES_INLINE

namespace quentara::KERNEL_TARGET {

struct SixteenBytes {
  __m128i v;

  LANES_INLINE SixteenBytes Load(const uint8_t* p) { return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))}; }
  LANES_INLINE_METHOD void Store(uint8_t* p) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
};

LANES_FUNCTION SixteenBytes operator+(SixteenBytes a, SixteenBytes b) {
  return {_mm_add_epi8(a.v, b.v)};
}
LANES_FUNCTION SixteenBytes operator-(SixteenBytes a, SixteenBytes b) {
  return {_mm_sub_epi8(a.v, b.v)};
}
/// How many of the bytes, which do not fall, are not above the limit, 0..255.
LANES_FUNCTION size_t CountNotAbove(SixteenBytes bytes, int limit) {
  const __m128i limits = _mm_set1_epi8(static_cast<char>(limit));
  const __m128i notAbove = _mm_cmpeq_epi8(_mm_max_epu8(bytes.v, limits), limits);
  return static_cast<size_t>(__builtin_ctz(~static_cast<unsigned>(_mm_movemask_epi8(notAbove))));
}

}  // namespace quentara::KERNEL_TARGET
