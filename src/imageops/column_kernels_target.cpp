// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// The upkeep of column histograms: a sample changes one vector of counters in each level.
#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

// The lanes of kLanesFrom + 16 - lane that are not below `lane` are 1.
alignas(64) constexpr uint8_t kLanesFrom[33] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

template <int lanes>
LANES_INLINE uint8_t* SegmentOf(uint8_t* fine, size_t value) {
  return fine + value / lanes * SegmentPitch(lanes);
}

// Counters are bytes, which may alias anything: only locals stay in registers.
template <bool enters, bool leaves>
LANES_INLINE void CountEach(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving, int count) {
  constexpr int kLanes = FineLanes::kCount;
  uint8_t* fine = columns.fine;
  for (int i = 0; i < count; ++i, fine += kLanes * columns.step) {
    if (enters) ++SegmentOf<kLanes>(fine, entering[i])[entering[i] % kLanes];
    if (leaves) --SegmentOf<kLanes>(fine, leaving[i])[leaving[i] % kLanes];
  }
}

template <bool enters, bool leaves, bool distances>
LANES_INLINE void CountBelow(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving,
                             int count) {
  uint8_t *fine = columns.fine, *coarse = columns.coarse;
  int16_t* distance = reinterpret_cast<int16_t*>(columns.distances);
  const size_t toNext = 16 * columns.step;
  int16_t ends[kCoarseSegments];
  for (int s = 0; s < kCoarseSegments; ++s) ends[s] = static_cast<int16_t>(16 * (s + 1));
  const Lanes segmentEnds = Lanes::Load(ends);
  for (int i = 0; i < count; ++i, fine += toNext, coarse += toNext) {
    SixteenBytes inSegments = SixteenBytes::Load(coarse);
    Lanes far = Lanes::Every(0);
    if (enters) {
      const unsigned value = entering[i];
      uint8_t* const counters = SegmentOf<16>(fine, value);
      (SixteenBytes::Load(counters) + SixteenBytes::Load(kLanesFrom + 15 - value % 16)).Store(counters);
      inSegments = inSegments + SixteenBytes::Load(kLanesFrom + 16 - value / 16);
      if (distances) far = far + Excess(segmentEnds, Lanes::Every(static_cast<int>(value)));
    }
    if (leaves) {
      const unsigned value = leaving[i];
      uint8_t* const counters = SegmentOf<16>(fine, value);
      (SixteenBytes::Load(counters) - SixteenBytes::Load(kLanesFrom + 15 - value % 16)).Store(counters);
      inSegments = inSegments - SixteenBytes::Load(kLanesFrom + 16 - value / 16);
      if (distances) far = far - Excess(segmentEnds, Lanes::Every(static_cast<int>(value)));
    }
    inSegments.Store(coarse);
    if (distances) (Lanes::Load(distance) + far).Store(distance), distance += toNext;
  }
}

void MoveEach(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving, int count) {
  if (leaving == nullptr)
    CountEach<true, false>(columns, entering, leaving, count);
  else if (entering == nullptr)
    CountEach<false, true>(columns, entering, leaving, count);
  else
    CountEach<true, true>(columns, entering, leaving, count);
}

template <bool distances>
void MoveBelow(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving, int count) {
  if (leaving == nullptr)
    CountBelow<true, false, distances>(columns, entering, leaving, count);
  else if (entering == nullptr)
    CountBelow<false, true, distances>(columns, entering, leaving, count);
  else
    CountBelow<true, true, distances>(columns, entering, leaving, count);
}

}  // namespace

extern const ColumnKernels kColumnKernels;
const ColumnKernels kColumnKernels = {{FineLanes::kCount, 16, 16}, {MoveEach, MoveBelow<false>, MoveBelow<true>}};

}  // namespace quentara::KERNEL_TARGET
