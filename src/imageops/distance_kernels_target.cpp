// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// Mean distances by the instruction that compares blocks of video: it sums the distances of eight bytes. Of a register
// of neighbouring samples every eight belong to the window of another pixel, eight pixels apart; seven steps to the
// right give the pixels between them.
#include "imageops/byte_lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

static_assert(kByteLanes <= kMostByteLanes);

constexpr int kEight = 8;
constexpr int kPhases = kByteLanes == 64 ? 8 : 4;  ///< steps to the right at a time, as many as there are registers for

// Out of line, as its loops need all registers. sums[i] is of pixel x + i; medians has eight more than a register.
__attribute__((noinline)) void SumDistances(const WindowLines& windows, int x, const uint8_t* medians, uint32_t* sums) {
  for (int phase = 0; phase < kEight; phase += kPhases) {
    Bytes levels[kPhases];
    EightSums distances[kPhases];
    for (int p = 0; p < kPhases; ++p)
      levels[p] = EveryEighth(LoadBytes(medians + phase + p)), distances[p] = NoEightSums();
    for (int i = 0; i < windows.count; ++i) {
      const uint8_t* samples = windows.lines[i].samples + x + phase;
      int left = windows.lines[i].side;
      for (; left > kEight; left -= kEight, samples += kEight)
#pragma GCC unroll 8
        for (int p = 0; p < kPhases; ++p)
          distances[p] = distances[p] + SumsOfDistances(levels[p], LoadBytes(samples + p));
      const FirstOfEight inWindow(left);
#pragma GCC unroll 8
      for (int p = 0; p < kPhases; ++p)
        distances[p] = distances[p] + SumsOfDistances(levels[p], inWindow.LoadBytes(samples + p));
    }
    for (int p = 0; p < kPhases; p += 4) StoreFourSums(distances + p, sums + phase + p);
  }
}

void Deviation(const WindowLines& windows, const uint8_t* medians, const float* sizes, float* out) {
  int places = 0;
  for (int i = 0; i < windows.count; ++i) places += (windows.lines[i].side + kEight - 1) / kEight * kEight;
  const float allPlaces = static_cast<float>(places);
  uint8_t lastMedians[kByteLanes + kEight] = {};
  uint32_t sums[kMostPixels];
  for (int first = 0; first < windows.width; first += kMostPixels) {
    const int end = first + kMostPixels < windows.width ? first + kMostPixels : windows.width;
    for (int x = first; x < end; x += kByteLanes) {
      const uint8_t* levels = medians + x;
      const int left = windows.width - x;
      if (left < kByteLanes + kEight) {
        for (int i = 0; i < left; ++i) lastMedians[i] = levels[i];
        levels = lastMedians;
      }
      SumDistances(windows, x, levels, sums + x - first);
    }
    for (int x = first; x < end; ++x) {
      // What is not the window's is 0, as far off as the median is high. Whole numbers below 2^24: exact.
      const float sum = static_cast<float>(static_cast<int>(sums[x - first])), level = static_cast<float>(medians[x]);
      out[x] = (sum - (allPlaces - sizes[x]) * level) / sizes[x];
    }
  }
}

}  // namespace

extern const DistanceKernels kDistanceKernels;
const DistanceKernels kDistanceKernels = {Deviation};

}  // namespace quentara::KERNEL_TARGET
