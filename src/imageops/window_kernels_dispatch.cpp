#include "imageops/window_kernels_dispatch.h"

#include <atomic>

namespace quentara {

namespace baseline {
extern const ColumnKernels kColumnKernels;
extern const HistogramKernels kHistogramKernels[3];
extern const DirectKernels kDirectKernels;
extern const DistanceKernels kDistanceKernels;
extern const RangeMedianKernels kRangeMedianKernels;
extern const MedianKernels kMedianKernels;
extern const ExtremeKernels kLargestKernels, kSmallestKernels;
extern const BoxKernels kBoxKernels;
extern const DiamondKernels kDiamondKernels;
extern const RotationKernels kRotationKernels;
extern const PixelKernels kPixelKernels;
}  // namespace baseline

namespace avx2 {
extern const ColumnKernels kColumnKernels;
extern const HistogramKernels kHistogramKernels[3];
extern const DirectKernels kDirectKernels;
extern const DistanceKernels kDistanceKernels;
extern const RangeMedianKernels kRangeMedianKernels;
extern const MedianKernels kMedianKernels;
extern const ExtremeKernels kLargestKernels, kSmallestKernels;
extern const BoxKernels kBoxKernels;
extern const DiamondKernels kDiamondKernels;
extern const RotationKernels kRotationKernels;
extern const PixelKernels kPixelKernels;
}  // namespace avx2

namespace avx512 {
extern const ColumnKernels kColumnKernels;
extern const HistogramKernels kHistogramKernels[3];
extern const DirectKernels kDirectKernels;
extern const DistanceKernels kDistanceKernels;
extern const QuadKernels kQuadKernels;
extern const ExtremeKernels kLargestKernels, kSmallestKernels;
extern const PixelKernels kPixelKernels;
}  // namespace avx512

namespace {

std::atomic<const WindowKernels*> chosen{nullptr};

const WindowKernels plain = {"baseline",
                             baseline::kColumnKernels,
                             baseline::kHistogramKernels,
                             baseline::kDirectKernels,
                             baseline::kDistanceKernels,
                             nullptr,
                             baseline::kRangeMedianKernels,
                             baseline::kMedianKernels,
                             baseline::kLargestKernels,
                             baseline::kSmallestKernels,
                             baseline::kBoxKernels,
                             baseline::kDiamondKernels,
                             baseline::kRotationKernels,
                             baseline::kPixelKernels};
const WindowKernels wide = {"avx2",
                            avx2::kColumnKernels,
                            avx2::kHistogramKernels,
                            avx2::kDirectKernels,
                            avx2::kDistanceKernels,
                            nullptr,
                            avx2::kRangeMedianKernels,
                            avx2::kMedianKernels,
                            avx2::kLargestKernels,
                            avx2::kSmallestKernels,
                            avx2::kBoxKernels,
                            avx2::kDiamondKernels,
                            avx2::kRotationKernels,
                            avx2::kPixelKernels};
// Networks, bisection, box means, diamonds and rotations gain nothing by wider registers.
const WindowKernels widest = {"avx512",
                              avx512::kColumnKernels,
                              avx512::kHistogramKernels,
                              avx512::kDirectKernels,
                              avx512::kDistanceKernels,
                              &avx512::kQuadKernels,
                              avx2::kRangeMedianKernels,
                              avx2::kMedianKernels,
                              avx512::kLargestKernels,
                              avx512::kSmallestKernels,
                              avx2::kBoxKernels,
                              avx2::kDiamondKernels,
                              avx2::kRotationKernels,
                              avx512::kPixelKernels};

std::vector<const WindowKernels*> FindRunnable() {
  std::vector<const WindowKernels*> sets = {&plain};
  __builtin_cpu_init();
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi2") || !__builtin_cpu_supports("popcnt"))
    return sets;
  sets.push_back(&wide);
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
      __builtin_cpu_supports("avx512vnni"))
    sets.push_back(&widest);
  return sets;
}

const std::vector<const WindowKernels*> runnable = FindRunnable();

}  // namespace

const std::vector<const WindowKernels*>& RunnableKernels() {
  return runnable;
}

const WindowKernels& ActiveKernels() {
  const WindowKernels* const kernels = chosen.load(std::memory_order_relaxed);
  return kernels != nullptr ? *kernels : *RunnableKernels().back();
}

KernelScope::KernelScope(const WindowKernels& kernels) : former_(chosen.exchange(&kernels)) {}

KernelScope::~KernelScope() {
  chosen = former_;
}

}  // namespace quentara
