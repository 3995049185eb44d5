// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// The upkeep of column histograms: a sample changes one vector of counters in each level.
#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

// Where the counter of each value lies among those of a column, in segments of so many lanes.
template <int lanes>
struct Places {
  constexpr Places() {
    for (size_t v = 0; v < 256; ++v) {
      segment[v] = static_cast<uint32_t>(v / lanes * SegmentPitch(lanes));
      counter[v] = static_cast<uint32_t>(segment[v] + v % lanes);
    }
  }
  uint32_t segment[256] = {}, counter[256] = {};
};
template <int lanes>
constexpr Places<lanes> kPlaces;

// What one sample adds to the running sums of its column: to those of its fine segment and to the coarse ones.
struct Changes {
  constexpr Changes() {
    for (int v = 0; v < 256; ++v)
      for (int lane = 0; lane < 16; ++lane) {
        of[v].fine[lane] = lane > v % 16;
        of[v].coarse[lane] = lane >= v / 16;
      }
  }
  struct {
    uint8_t fine[16], coarse[16];
  } of[256] = {};
};
alignas(64) constexpr Changes kChanges;

// Counters are bytes, which may alias anything: only locals stay in registers.
template <bool enters, bool leaves>
LANES_INLINE void CountEach(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving, int count) {
  constexpr int kLanes = FineLanes::kCount;
  const size_t toNext = kLanes * columns.step;
  uint8_t* fine = columns.fine;
  for (int i = 0; i < count; ++i, fine += toNext) {
    if (enters) ++fine[kPlaces<kLanes>.counter[entering[i]]];
    if (leaves) --fine[kPlaces<kLanes>.counter[leaving[i]]];
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
      const size_t value = entering[i];
      uint8_t* const counters = fine + kPlaces<16>.segment[value];
      (SixteenBytes::Load(counters) + SixteenBytes::Load(kChanges.of[value].fine)).Store(counters);
      inSegments = inSegments + SixteenBytes::Load(kChanges.of[value].coarse);
      if (distances) far = far + Excess(segmentEnds, Lanes::Every(static_cast<int>(value)));
    }
    if (leaves) {
      const size_t value = leaving[i];
      uint8_t* const counters = fine + kPlaces<16>.segment[value];
      (SixteenBytes::Load(counters) - SixteenBytes::Load(kChanges.of[value].fine)).Store(counters);
      inSegments = inSegments - SixteenBytes::Load(kChanges.of[value].coarse);
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
