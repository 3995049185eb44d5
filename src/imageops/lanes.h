/// The 16-bit counters of histograms, many at a time: sixteen `Lanes`, or `FineLanes`, which are 32 with AVX-512. Whole
/// segments of a histogram gain by wider registers, running sums that are looked up one by one do not.
///
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET: nothing here is ever shared
/// between two sets.
#pragma once

#ifdef __AVX512BW__
#include "imageops/lanes_avx512.h"
#elif defined(__AVX2__)
#include "imageops/lanes_avx2.h"
#else
#include "imageops/lanes_sse2.h"
#endif

namespace quentara::KERNEL_TARGET {

LANES_FUNCTION int Total(WideLanes a) {
  __m128i s = Halved(a);
  s = _mm_add_epi32(s, _mm_shuffle_epi32(s, _MM_SHUFFLE(1, 0, 3, 2)));
  s = _mm_add_epi32(s, _mm_shuffle_epi32(s, _MM_SHUFFLE(2, 3, 0, 1)));
  return _mm_cvtsi128_si32(s);
}

}  // namespace quentara::KERNEL_TARGET
