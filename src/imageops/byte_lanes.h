/// One register of bytes, 64 with AVX-512, 32 with AVX2 and 16 with SSE2, and the sums and means that they grow into.
///
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET: nothing here is ever shared
/// between two sets. Widening keeps to the 128-bit parts of a register, so that packing puts everything back in order.
#pragma once

#include <immintrin.h>
#include <stdint.h>

// Small arrays of registers live in registers when the loops over them unroll. Sanitizers watch every access to them,
// and long networks would take minutes to compile that way.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define BYTE_LANES_INLINE_METHOD inline
#define BYTE_LANES_UNROLL
#else
#define BYTE_LANES_INLINE_METHOD inline __attribute__((always_inline))
#define BYTE_LANES_UNROLL _Pragma("GCC unroll 512")
#endif
#define BYTE_LANES_INLINE [[maybe_unused]] static BYTE_LANES_INLINE_METHOD

namespace quentara::KERNEL_TARGET {

#ifdef __AVX512BW__
using Register = __m512i;
using FloatRegister = __m512;
#define LANES_OPERATION(name) _mm512_##name
#define LANES_REGISTER(name) _mm512_##name##_si512
#define LANES_FLOATS _mm512_castsi512_ps
#elif defined(__AVX2__)
using Register = __m256i;
using FloatRegister = __m256;
#define LANES_OPERATION(name) _mm256_##name
#define LANES_REGISTER(name) _mm256_##name##_si256
#define LANES_FLOATS _mm256_castsi256_ps
#else
using Register = __m128i;
using FloatRegister = __m128;
#define LANES_OPERATION(name) _mm_##name
#define LANES_REGISTER(name) _mm_##name##_si128
#define LANES_FLOATS _mm_castsi128_ps
#endif

struct Bytes {
  Register v;
};
struct Words {  ///< 16 bits each
  Register v;
};
struct Floats {
  FloatRegister v;
};

constexpr int kByteLanes = sizeof(Register);

BYTE_LANES_INLINE Bytes LoadBytes(const uint8_t* p) {
  return {LANES_REGISTER(loadu)(reinterpret_cast<const Register*>(p))};
}
BYTE_LANES_INLINE void StoreBytes(Bytes a, uint8_t* p) {
  LANES_REGISTER(storeu)(reinterpret_cast<Register*>(p), a.v);
}
BYTE_LANES_INLINE Bytes EveryByte(int value) {
  return {LANES_OPERATION(set1_epi8)(static_cast<char>(value))};
}
BYTE_LANES_INLINE Bytes operator+(Bytes a, Bytes b) {
  return {LANES_OPERATION(add_epi8)(a.v, b.v)};
}
BYTE_LANES_INLINE Bytes operator-(Bytes a, Bytes b) {
  return {LANES_OPERATION(sub_epi8)(a.v, b.v)};
}
/// Held to 0..255.
BYTE_LANES_INLINE Bytes SaturatedSum(Bytes a, Bytes b) {
  return {LANES_OPERATION(adds_epu8)(a.v, b.v)};
}
BYTE_LANES_INLINE Bytes SaturatedDifference(Bytes a, Bytes b) {
  return {LANES_OPERATION(subs_epu8)(a.v, b.v)};
}
BYTE_LANES_INLINE Bytes Smaller(Bytes a, Bytes b) {
  return {LANES_OPERATION(min_epu8)(a.v, b.v)};
}
BYTE_LANES_INLINE Bytes Larger(Bytes a, Bytes b) {
  return {LANES_OPERATION(max_epu8)(a.v, b.v)};
}

BYTE_LANES_INLINE Bytes operator^(Bytes a, Bytes b) {
  return {LANES_REGISTER(xor)(a.v, b.v)};
}
/// (a + b + 1) / 2.
BYTE_LANES_INLINE Bytes UpperMean(Bytes a, Bytes b) {
  return {LANES_OPERATION(avg_epu8)(a.v, b.v)};
}
#ifndef __AVX512BW__
/// count + 1 where a is above b, both of them signed.
BYTE_LANES_INLINE Bytes CountAbove(Bytes count, Bytes a, Bytes b) {
  return {LANES_OPERATION(sub_epi8)(count.v, LANES_OPERATION(cmpgt_epi8)(a.v, b.v))};
}
/// sum + term where a is above b, both of them signed.
BYTE_LANES_INLINE Bytes AddWhereAbove(Bytes sum, Bytes term, Bytes a, Bytes b) {
  return {LANES_OPERATION(add_epi8)(sum.v, LANES_REGISTER(and)(term.v, LANES_OPERATION(cmpgt_epi8)(a.v, b.v)))};
}
#endif

BYTE_LANES_INLINE Words EveryWord(int value) {
  return {LANES_OPERATION(set1_epi16)(static_cast<short>(value))};
}
BYTE_LANES_INLINE Words operator+(Words a, Words b) {
  return {LANES_OPERATION(add_epi16)(a.v, b.v)};
}
BYTE_LANES_INLINE Words operator-(Words a, Words b) {
  return {LANES_OPERATION(sub_epi16)(a.v, b.v)};
}
BYTE_LANES_INLINE Words operator*(Words a, Words b) {
  return {LANES_OPERATION(mullo_epi16)(a.v, b.v)};
}
/// The lanes of a where b is 0.
BYTE_LANES_INLINE Words WhereZero(Words b, Words a) {
#ifdef __AVX512BW__
  return {_mm512_maskz_mov_epi16(_mm512_testn_epi16_mask(b.v, b.v), a.v)};
#else
  return {LANES_REGISTER(and)(a.v, LANES_OPERATION(cmpeq_epi16)(b.v, LANES_REGISTER(setzero)()))};
#endif
}
/// The bytes of a register as words, and words as bytes again, each cut to 0..255.
BYTE_LANES_INLINE Words LowWords(Bytes a) {
  return {LANES_OPERATION(unpacklo_epi8)(a.v, LANES_REGISTER(setzero)())};
}
BYTE_LANES_INLINE Words HighWords(Bytes a) {
  return {LANES_OPERATION(unpackhi_epi8)(a.v, LANES_REGISTER(setzero)())};
}
BYTE_LANES_INLINE Bytes PackWords(Words low, Words high) {
  return {LANES_OPERATION(packus_epi16)(low.v, high.v)};
}

#ifndef __AVX512BW__
/// p[2 i] = even[i], p[2 i + 1] = odd[i].
BYTE_LANES_INLINE void StoreInterleaved(Bytes even, Bytes odd, uint8_t* p) {
  const Register low = LANES_OPERATION(unpacklo_epi8)(even.v, odd.v);
  const Register high = LANES_OPERATION(unpackhi_epi8)(even.v, odd.v);
#ifdef __AVX2__
  StoreBytes({_mm256_permute2x128_si256(low, high, 0x20)}, p);
  StoreBytes({_mm256_permute2x128_si256(low, high, 0x31)}, p + kByteLanes);
#else
  StoreBytes({low}, p);
  StoreBytes({high}, p + kByteLanes);
#endif
}
/// even[i] = p[2 i], odd[i] = p[2 i + 1].
BYTE_LANES_INLINE void LoadInterleaved(const uint8_t* p, Bytes& even, Bytes& odd) {
  const Register a = LoadBytes(p).v, b = LoadBytes(p + kByteLanes).v, low = EveryWord(0xff).v;
  even = PackWords({LANES_REGISTER(and)(a, low)}, {LANES_REGISTER(and)(b, low)});
  odd = PackWords({LANES_OPERATION(srli_epi16)(a, 8)}, {LANES_OPERATION(srli_epi16)(b, 8)});
#ifdef __AVX2__
  even.v = _mm256_permute4x64_epi64(even.v, 0xd8), odd.v = _mm256_permute4x64_epi64(odd.v, 0xd8);
#endif
}
#endif

/// Unsigned words as floats.
BYTE_LANES_INLINE Floats LowFloats(Words a) {
  return {LANES_OPERATION(cvtepi32_ps)(LANES_OPERATION(unpacklo_epi16)(a.v, LANES_REGISTER(setzero)()))};
}
BYTE_LANES_INLINE Floats HighFloats(Words a) {
  return {LANES_OPERATION(cvtepi32_ps)(LANES_OPERATION(unpackhi_epi16)(a.v, LANES_REGISTER(setzero)()))};
}
BYTE_LANES_INLINE Floats operator+(Floats a, Floats b) {
  return {LANES_OPERATION(add_ps)(a.v, b.v)};
}
BYTE_LANES_INLINE Floats operator-(Floats a, Floats b) {
  return {LANES_OPERATION(sub_ps)(a.v, b.v)};
}
BYTE_LANES_INLINE Floats operator*(Floats a, Floats b) {
  return {LANES_OPERATION(mul_ps)(a.v, b.v)};
}
BYTE_LANES_INLINE Floats operator/(Floats a, Floats b) {
  return {LANES_OPERATION(div_ps)(a.v, b.v)};
}
BYTE_LANES_INLINE Floats EveryFloat(float value) {
  return {LANES_OPERATION(set1_ps)(value)};
}
/// Floats of 0 to less than 32768 as words, their fractions cut off.
BYTE_LANES_INLINE Words PackFloats(Floats low, Floats high) {
  return {LANES_OPERATION(packs_epi32)(LANES_OPERATION(cvttps_epi32)(low.v), LANES_OPERATION(cvttps_epi32)(high.v))};
}

/// Sums of bytes that outgrow a byte, for up to 257 additions of 255: the even bytes are what is left of all.
struct ByteSums {
  Words all, odd;
};
BYTE_LANES_INLINE ByteSums NoSums() {
  return {EveryWord(0), EveryWord(0)};
}
BYTE_LANES_INLINE ByteSums operator+(ByteSums a, Bytes b) {
  return {a.all + Words{b.v}, a.odd + Words{LANES_OPERATION(srli_epi16)(b.v, 8)}};
}
BYTE_LANES_INLINE Words EvenSums(ByteSums a) {
  return a.all - Words{LANES_OPERATION(slli_epi16)(a.odd.v, 8)};
}
BYTE_LANES_INLINE Words LowWords(ByteSums a) {
  return {LANES_OPERATION(unpacklo_epi16)(EvenSums(a).v, a.odd.v)};
}
BYTE_LANES_INLINE Words HighWords(ByteSums a) {
  return {LANES_OPERATION(unpackhi_epi16)(EvenSums(a).v, a.odd.v)};
}

/// The 16 bytes of every `pitch`, as many as a register holds.
BYTE_LANES_INLINE Register LoadParts(const void* p, [[maybe_unused]] int pitch) {
  const auto part = [=](int i) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(static_cast<const char*>(p) + i * pitch));
  };
#ifdef __AVX512BW__
  const __m512i first = _mm512_inserti32x4(_mm512_castsi128_si512(part(0)), part(1), 1);
  return _mm512_inserti32x4(_mm512_inserti32x4(first, part(2), 2), part(3), 3);
#elif defined(__AVX2__)
  return _mm256_inserti128_si256(_mm256_castsi128_si256(part(0)), part(1), 1);
#else
  return part(0);
#endif
}
/// What belongs to the low and the high words of a register of bytes, from memory in the order of pixels.
BYTE_LANES_INLINE Words LoadLowWords(const uint16_t* p) {
  return {LoadParts(p, 32)};
}
BYTE_LANES_INLINE Words LoadHighWords(const uint16_t* p) {
  return {LoadParts(p + 8, 32)};
}
/// The floats of one quarter of a register of bytes: those of the low and high half of its low words, then of its high.
BYTE_LANES_INLINE Floats LoadQuarter(const float* p, int quarter) {
  return {LANES_FLOATS(LoadParts(p + 4 * quarter, 64))};
}
BYTE_LANES_INLINE void StoreQuarter(Floats a, float* p, int quarter) {
  float* const first = p + 4 * quarter;
#ifdef __AVX512BW__
  _mm_storeu_ps(first, _mm512_castps512_ps128(a.v));
  _mm_storeu_ps(first + 16, _mm512_extractf32x4_ps(a.v, 1));
  _mm_storeu_ps(first + 32, _mm512_extractf32x4_ps(a.v, 2));
  _mm_storeu_ps(first + 48, _mm512_extractf32x4_ps(a.v, 3));
#elif defined(__AVX2__)
  _mm_storeu_ps(first, _mm256_castps256_ps128(a.v));
  _mm_storeu_ps(first + 16, _mm256_extractf128_ps(a.v, 1));
#else
  _mm_storeu_ps(first, a.v);
#endif
}

/// Sums of the words of a register of bytes, in quarters.
struct QuarterSums {
  Floats quarters[4];

  BYTE_LANES_INLINE_METHOD void Add(Words low, Words high) {
    quarters[0] = quarters[0] + LowFloats(low);
    quarters[1] = quarters[1] + HighFloats(low);
    quarters[2] = quarters[2] + LowFloats(high);
    quarters[3] = quarters[3] + HighFloats(high);
  }
};
BYTE_LANES_INLINE QuarterSums NoQuarterSums() {
  const Floats none = EveryFloat(0.0f);
  return {{none, none, none, none}};
}

}  // namespace quentara::KERNEL_TARGET
