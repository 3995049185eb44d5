// Built once per instruction set; the build sets KERNEL_TARGET and the flags. Plain loops that the compiler vectorises.
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

void RangesOf(const uint8_t* __restrict centre, int limit, uint8_t* __restrict highest, uint8_t* __restrict span,
              int width) {
  const uint8_t reach = static_cast<uint8_t>(limit), most = static_cast<uint8_t>(255 - limit);
  for (int x = 0; x < width; ++x) {
    const uint8_t top = static_cast<uint8_t>((centre[x] < most ? centre[x] : most) + reach);
    const uint8_t bottom = static_cast<uint8_t>((centre[x] > reach ? centre[x] : reach) - reach);
    highest[x] = top;
    span[x] = static_cast<uint8_t>(top - bottom + 1);
  }
}

template <int taps>
void AddNear(const uint8_t* __restrict values, const uint8_t* __restrict highest, const uint8_t* __restrict span,
             uint16_t* __restrict sums, uint16_t* __restrict counts, int width) {
  for (int x = 0; x < width; ++x) {
    uint8_t sum = 0, far = 0;
    for (int i = 0; i < taps; ++i) {
      // Wraps for values above the highest, so that either side of the range leaves nothing of the span.
      const uint8_t depth = static_cast<uint8_t>(highest[x] - values[x + i]);
      const uint8_t deeper = depth > span[x] ? depth : span[x];
      sum = static_cast<uint8_t>(sum + static_cast<uint8_t>(deeper - depth));
      far = static_cast<uint8_t>(far + (deeper == depth ? 1 : 0));
    }
    sums[x] = static_cast<uint16_t>(sums[x] + sum);
    counts[x] = static_cast<uint16_t>(counts[x] + taps - far);
  }
}

void MeanOfNear(const uint16_t* __restrict sums, const uint16_t* __restrict counts, const uint8_t* __restrict highest,
                const uint8_t* __restrict span, uint8_t* __restrict out, int width) {
  for (int x = 0; x < width; ++x) {
    const int sum = sums[x] + (highest[x] - span[x]) * counts[x];
    const float mean = static_cast<float>(sum) / static_cast<float>(counts[x]);
    out[x] = static_cast<uint8_t>(static_cast<int>(mean + 0.5f));
  }
}

template <int taps>
void CountNotAbove(const uint8_t* __restrict values, const uint8_t* __restrict limits, uint8_t* __restrict counts,
                   int width) {
  for (int x = 0; x < width; ++x) {
    uint8_t count = counts[x];
    for (int i = 0; i < taps; ++i) count = static_cast<uint8_t>(count + (values[x + i] <= limits[x] ? 1 : 0));
    counts[x] = count;
  }
}

template <int taps>
void AddDistances(const uint8_t* __restrict values, const uint8_t* __restrict medians, int* __restrict sums,
                  int width) {
  for (int x = 0; x < width; ++x) {
    uint16_t sum = 0;
    for (int i = 0; i < taps; ++i) {
      const uint8_t a = values[x + i], b = medians[x];
      sum = static_cast<uint16_t>(sum + static_cast<uint8_t>((a > b ? a : b) - (a > b ? b : a)));
    }
    sums[x] += sum;
  }
}

}  // namespace

extern const DirectKernels kDirectKernels;
const DirectKernels kDirectKernels = {
    RangesOf,
    {nullptr, AddNear<1>, AddNear<2>, AddNear<3>, AddNear<4>, AddNear<5>, AddNear<6>, AddNear<7>, AddNear<8>},
    MeanOfNear,
    {nullptr, CountNotAbove<1>, CountNotAbove<2>, CountNotAbove<3>, CountNotAbove<4>, CountNotAbove<5>,
     CountNotAbove<6>, CountNotAbove<7>, CountNotAbove<8>},
    {nullptr, AddDistances<1>, AddDistances<2>, AddDistances<3>, AddDistances<4>, AddDistances<5>, AddDistances<6>,
     AddDistances<7>, AddDistances<8>}};

}  // namespace quentara::KERNEL_TARGET
