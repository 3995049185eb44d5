// Built once per instruction set; the build sets KERNEL_TARGET and the flags. Plain loops that the compiler vectorises.
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

struct Largest {
  static uint8_t Of(uint8_t a, uint8_t b) { return a > b ? a : b; }
};

struct Smallest {
  static uint8_t Of(uint8_t a, uint8_t b) { return a < b ? a : b; }
};

template <class Extreme>
void OfPairs(const uint8_t* a, const uint8_t* b, uint8_t* __restrict extremes, int width) {
  for (int x = 0; x < width; ++x) extremes[x] = Extreme::Of(a[x], b[x]);
}

template <class Extreme>
void Include(const uint8_t* __restrict samples, uint8_t* __restrict extremes, int width) {
  for (int x = 0; x < width; ++x) extremes[x] = Extreme::Of(samples[x], extremes[x]);
}

template <class Extreme, int side>
void OfRuns(const uint8_t* samples, uint8_t* __restrict extremes, int width) {
  for (int x = 0; x < width; ++x) {
    uint8_t extreme = samples[x];
    for (int i = 1; i < side; ++i) extreme = Extreme::Of(extreme, samples[x + i]);
    extremes[x] = extreme;
  }
}

template <class Extreme>
void OfWindows(int side, uint8_t* samples, uint8_t* spare, uint8_t* extremes, int width) {
  if (side == 3) return OfRuns<Extreme, 3>(samples, extremes, width);
  if (side == 5) return OfRuns<Extreme, 5>(samples, extremes, width);
  int run = 1;  // samples[i] is the extreme of `run` samples from i on
  for (; 2 * run <= side; run *= 2) {
    OfPairs<Extreme>(samples, samples + run, spare, width + side - 2 * run);
    uint8_t* const former = samples;
    samples = spare, spare = former;
  }
  OfPairs<Extreme>(samples, samples + side - run, extremes, width);
}

template <class Extreme>
constexpr ExtremeKernels KernelsOf() {
  return {OfPairs<Extreme>, Include<Extreme>, OfWindows<Extreme>};
}

}  // namespace

extern const ExtremeKernels kLargestKernels, kSmallestKernels;
const ExtremeKernels kLargestKernels = KernelsOf<Largest>(), kSmallestKernels = KernelsOf<Smallest>();

}  // namespace quentara::KERNEL_TARGET
