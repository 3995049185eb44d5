// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
#include "imageops/byte_lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

constexpr int kIntLanes = kByteLanes / 4;

struct Ints {  ///< 32 bits each
  Register v;
};

BYTE_LANES_INLINE Ints LoadInts(const int* p) {
  return {LANES_REGISTER(loadu)(reinterpret_cast<const Register*>(p))};
}
BYTE_LANES_INLINE Ints operator+(Ints a, Ints b) {
  return {LANES_OPERATION(add_epi32)(a.v, b.v)};
}
BYTE_LANES_INLINE Ints operator-(Ints a, Ints b) {
  return {LANES_OPERATION(sub_epi32)(a.v, b.v)};
}

/// Lane i becomes the sum of lanes 0 .. i.
BYTE_LANES_INLINE Ints RunningSums(Ints a) {
#ifdef __AVX2__
  a = a + Ints{_mm256_slli_si256(a.v, 4)};
  a = a + Ints{_mm256_slli_si256(a.v, 8)};
  return a + Ints{_mm256_shuffle_epi32(_mm256_permute2x128_si256(a.v, a.v, 0x08), 0xff)};
#else
  a = a + Ints{_mm_slli_si128(a.v, 4)};
  return a + Ints{_mm_slli_si128(a.v, 8)};
#endif
}
BYTE_LANES_INLINE Ints LastLane(Ints a) {
#ifdef __AVX2__
  return {_mm256_permutevar8x32_epi32(a.v, _mm256_set1_epi32(7))};
#else
  return {_mm_shuffle_epi32(a.v, 0xff)};
#endif
}

void SlideColumns(const uint8_t* __restrict entering, const uint8_t* __restrict leaving, int* __restrict columns,
                  int width) {
  for (int x = 0; x < width; ++x) columns[x] += entering[x] - leaving[x];
}

// The means of as many windows as a register has ints, as ints. `before` is the sum of the window before them.
BYTE_LANES_INLINE Ints NextMeans(const int* columns, int reach, const float* counts, Ints& before) {
  const Ints sums = RunningSums(LoadInts(columns + reach) - LoadInts(columns - reach - 1));
  const Floats quotients =
      Floats{LANES_OPERATION(cvtepi32_ps)((before + sums).v)} / Floats{LANES_OPERATION(loadu_ps)(counts)};
  before = before + LastLane(sums);
  return {LANES_OPERATION(cvttps_epi32)((quotients + EveryFloat(0.5f)).v)};
}

void MeansOfColumns(const int* columns, int reach, const float* counts, uint8_t* means, int width) {
  int sum = 0;
  for (int x = 0; x < reach; ++x) sum += columns[x];
  Ints before = {LANES_OPERATION(set1_epi32)(sum)};
  for (int x = 0; x < width; x += kByteLanes) {
    const Ints a = NextMeans(columns + x, reach, counts + x, before);
    const Ints b = NextMeans(columns + x + kIntLanes, reach, counts + x + kIntLanes, before);
    const Ints c = NextMeans(columns + x + 2 * kIntLanes, reach, counts + x + 2 * kIntLanes, before);
    const Ints d = NextMeans(columns + x + 3 * kIntLanes, reach, counts + x + 3 * kIntLanes, before);
    Bytes bytes = PackWords({LANES_OPERATION(packs_epi32)(a.v, b.v)}, {LANES_OPERATION(packs_epi32)(c.v, d.v)});
#ifdef __AVX2__
    bytes.v = _mm256_permutevar8x32_epi32(bytes.v, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
#endif
    if (x + kByteLanes <= width) {
      StoreBytes(bytes, means + x);
    } else {
      uint8_t last[kByteLanes];
      StoreBytes(bytes, last);
      for (int i = 0; x + i < width; ++i) means[x + i] = last[i];
    }
  }
}

}  // namespace

extern const BoxKernels kBoxKernels;
const BoxKernels kBoxKernels = {SlideColumns, MeansOfColumns};

}  // namespace quentara::KERNEL_TARGET
