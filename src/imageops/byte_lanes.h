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
#elif defined(__AVX2__)
using Register = __m256i;
using FloatRegister = __m256;
#define LANES_OPERATION(name) _mm256_##name
#define LANES_REGISTER(name) _mm256_##name##_si256
#else
using Register = __m128i;
using FloatRegister = __m128;
#define LANES_OPERATION(name) _mm_##name
#define LANES_REGISTER(name) _mm_##name##_si128
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
BYTE_LANES_INLINE void StoreParts(Register a, void* p, [[maybe_unused]] int pitch) {
  const auto part = [=](int i) { return reinterpret_cast<__m128i*>(static_cast<char*>(p) + i * pitch); };
#ifdef __AVX512BW__
  _mm_storeu_si128(part(0), _mm512_castsi512_si128(a));
  _mm_storeu_si128(part(1), _mm512_extracti32x4_epi32(a, 1));
  _mm_storeu_si128(part(2), _mm512_extracti32x4_epi32(a, 2));
  _mm_storeu_si128(part(3), _mm512_extracti32x4_epi32(a, 3));
#elif defined(__AVX2__)
  _mm_storeu_si128(part(0), _mm256_castsi256_si128(a));
  _mm_storeu_si128(part(1), _mm256_extracti128_si256(a, 1));
#else
  _mm_storeu_si128(part(0), a);
#endif
}
/// What belongs to the low and the high words of a register of bytes, from memory in the order of pixels.
BYTE_LANES_INLINE Words LoadLowWords(const uint16_t* p) {
  return {LoadParts(p, 32)};
}
BYTE_LANES_INLINE Words LoadHighWords(const uint16_t* p) {
  return {LoadParts(p + 8, 32)};
}
/// Sums over every eight bytes.
struct EightSums {
  Register v;
};
BYTE_LANES_INLINE EightSums NoEightSums() {
  return {LANES_REGISTER(setzero)()};
}
BYTE_LANES_INLINE EightSums operator+(EightSums a, EightSums b) {
  return {LANES_OPERATION(add_epi64)(a.v, b.v)};
}
BYTE_LANES_INLINE EightSums SumsOfDistances(Bytes a, Bytes b) {
  return {LANES_OPERATION(sad_epu8)(a.v, b.v)};
}
/// p[8 i + k] = sum i of sums[k].
BYTE_LANES_INLINE void StoreFourSums(const EightSums* sums, uint32_t* p) {
  const auto pair = [](EightSums a, EightSums b) {
    return LANES_REGISTER(or)(a.v, LANES_OPERATION(slli_epi64)(b.v, 32));
  };
  const Register first = pair(sums[0], sums[1]), second = pair(sums[2], sums[3]);
  StoreParts(LANES_OPERATION(unpacklo_epi64)(first, second), p, 64);
  StoreParts(LANES_OPERATION(unpackhi_epi64)(first, second), p + 8, 64);
}

/// Of every eight bytes the first, eight times.
BYTE_LANES_INLINE Bytes EveryEighth(Bytes a) {
#ifdef __AVX2__
  alignas(16) static constexpr uint8_t kFirsts[16] = {0, 0, 0, 0, 0, 0, 0, 0, 8, 8, 8, 8, 8, 8, 8, 8};
  return {LANES_OPERATION(shuffle_epi8)(a.v, LoadParts(kFirsts, 0))};
#else
  __m128i v = _mm_and_si128(a.v, _mm_set1_epi64x(0xff));
  v = _mm_or_si128(v, _mm_slli_epi64(v, 8));
  v = _mm_or_si128(v, _mm_slli_epi64(v, 16));
  return {_mm_or_si128(v, _mm_slli_epi64(v, 32))};
#endif
}

/// Of every eight bytes the first so many, 1..8; the others are 0.
class FirstOfEight {
 public:
  BYTE_LANES_INLINE_METHOD explicit FirstOfEight(int count) {
#ifdef __AVX512BW__
    mask_ = (0xffu >> (8 - count)) * 0x0101010101010101u;
#else
    const auto bytes = static_cast<long long>(~0ull >> (64 - 8 * count));
    mask_ = LANES_OPERATION(set1_epi64x)(bytes);
#endif
  }
  BYTE_LANES_INLINE_METHOD Bytes LoadBytes(const uint8_t* p) const {
#ifdef __AVX512BW__
    return {_mm512_maskz_loadu_epi8(mask_, p)};
#else
    return {LANES_REGISTER(and)(mask_, KERNEL_TARGET::LoadBytes(p).v)};
#endif
  }

 private:
#ifdef __AVX512BW__
  __mmask64 mask_;
#else
  Register mask_;
#endif
};

}  // namespace quentara::KERNEL_TARGET
