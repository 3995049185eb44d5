// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// The read-outs of the strip engine: what each filter makes of the histogram of a window.
#include "imageops/histogram_window.h"
#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

struct Extent {
  int least, most;
};

LANES_INLINE Extent ExtentOf(const uint8_t* values, int from, int to) {
  uint8_t least = 255, most = 0;
  for (int i = from; i < to; ++i) {
    least = values[i] < least ? values[i] : least;
    most = values[i] > most ? values[i] : most;
  }
  return {least, most};
}

// Walks a row in blocks of pixels whose read-outs touch few segments; touched(x, end) says which those are.
template <bool tall, int step, class Touched, class Read>
LANES_INLINE void WalkRow(int width, FineLevel<tall, step>& fine, const Touched& touched, const Read& read) {
  constexpr int kMost = 32, kLeast = 8, kFew = 8;
  for (int x = 0, end = 0; x < width; x = end) {
    end = Smaller(x + kMost, width);
    Extent segments = touched(x, end);
    while (segments.most - segments.least >= kFew && end - x > kLeast) {
      end = x + Larger((end - x) / 2, kLeast);
      segments = touched(x, end);
    }
    fine.Track(x, segments.least, segments.most);
    fine.Walk(x, end, read);
  }
}

LANES_INLINE auto SegmentsOfRanges(const uint8_t* lowest, const uint8_t* highest) {
  return [=](int x, int end) {
    return Extent{ExtentOf(lowest, x, end).least / 16, ExtentOf(highest, x, end).most / 16};
  };
}

template <bool tall, int step = 1>
void Rank(const HistogramRow& row, const int* ranks, uint8_t* out) {
  CoarseLevel<tall, step> coarse(row);
  FineLevel<tall, step> fine(row);
  uint8_t segments[kMostPixels];
  int inSegment[kMostPixels];
  for (int x = 0; x < row.width; ++x) {
    const int rank = ranks[x] - kBias;
    const size_t segment = coarse.SegmentOfRank(rank);
    segments[x] = static_cast<uint8_t>(segment);
    inSegment[x] = rank - coarse.Below(segment) - kBias;
    coarse.Step();
  }
  WalkRow(
      row.width, fine, [&](int x, int end) { return ExtentOf(segments, x, end); },
      [&](int x) { out[x] = static_cast<uint8_t>(fine.ValueOfRank(segments[x], inSegment[x])); });
}

// With b samples below a range and e up to its end, its lower median has rank b + (e - b - 1) / 2.
LANES_INLINE int RankOfLowerMedian(int below, int upTo) {
  return (below + upTo - 1) >> 1;
}

// In a line down a column the histogram of the column is the window's.
void RangeMedianOfColumns(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  const uint8_t *fine = row.columns.fine, *coarse = row.columns.coarse;
  alignas(16) uint8_t belowSegment[32];  // from index 15 on
  belowSegment[15] = 0;
  for (int x = 0; x < row.width; ++x, fine += 16, coarse += 16) {
    StoreBytes(LoadBytes(coarse), belowSegment + 16);
    const size_t first = lowest[x], past = highest[x] + size_t{1};
    const int below = belowSegment[15 + first / 16] + fine[first / 16 * kSegmentPitch + first % 16];
    const int upTo = belowSegment[15 + past / 16] + fine[past / 16 * kSegmentPitch + past % 16];
    const int rank = RankOfLowerMedian(below, upTo);
    const size_t segment = CountNotAbove(LoadBytes(coarse), rank);
    const int inSegment = rank - belowSegment[15 + segment];
    out[x] =
        static_cast<uint8_t>(16 * segment + CountNotAbove(LoadBytes(fine + segment * kSegmentPitch), inSegment) - 1);
  }
}

template <bool tall>
void RangeMedian(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  if (row.side == 1) return RangeMedianOfColumns(row, lowest, highest, out);
  CoarseLevel<tall> coarse(row);
  FineLevel<tall> fine(row);
  WalkRow(row.width, fine, SegmentsOfRanges(lowest, highest), [&](int x) {
    const size_t first = lowest[x], past = highest[x] + size_t{1};
    const int below = fine.Below(first) + coarse.Below(first / 16);
    const int upTo = fine.Below(past) + coarse.Below(past / 16);
    const int rank = RankOfLowerMedian(below, upTo);  // the bias is in it twice, as in either count
    const size_t segment = coarse.SegmentOfRank(rank + kBias);
    out[x] = static_cast<uint8_t>(fine.ValueOfRank(segment, rank - coarse.Below(segment)));
    coarse.Step();
  });
}

// The sum of value - v over the samples v below a value, in two parts: one remains to be summed over lanes.
struct DistanceBelow {
  int sum;
  WideLanes inSegment;

  template <bool tall, int step>
  LANES_INLINE_METHOD DistanceBelow(const FineLevel<tall, step>& fine, const CoarseLevel<tall, step>& coarse,
                                    const DistanceLevel<tall, step>& distances, size_t value)
      : sum(distances.Below(value / 16) + static_cast<int>(value % 16) * (coarse.Below(value / 16) + 2 * kBias) +
            kBias),
        inSegment(MultiplyAdd(fine.segment(value / 16), LoadLanes(kLanesUpTo + 15 - value % 16))) {}
};

template <bool tall>
void RangeMean(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  CoarseLevel<tall> coarse(row);
  FineLevel<tall> fine(row);
  DistanceLevel<tall> distances(row);
  int sums[kMostPixels], counts[kMostPixels];
  WalkRow(row.width, fine, SegmentsOfRanges(lowest, highest), [&](int x) {
    const size_t first = lowest[x], past = highest[x] + size_t{1};
    const int below = fine.Below(first) + coarse.Below(first / 16) + 2 * kBias;
    const int count = fine.Below(past) + coarse.Below(past / 16) + 2 * kBias - below;
    const DistanceBelow upTo(fine, coarse, distances, past), upToFirst(fine, coarse, distances, first);
    const int belowRange = upToFirst.sum + static_cast<int>(past - first) * below;
    const int distance = upTo.sum - belowRange + Total(upTo.inSegment - upToFirst.inSegment);
    counts[x] = count, sums[x] = static_cast<int>(past) * count - distance;
    coarse.Step(), distances.Step();
  });
  for (int x = 0; x < row.width; ++x)
    out[x] = static_cast<uint8_t>(static_cast<int>(static_cast<float>(sums[x]) / static_cast<float>(counts[x]) + 0.5f));
}

template <bool tall, int step = 1>
void Deviation(const HistogramRow& row, const uint8_t* medians, float* out) {
  CoarseLevel<tall, step> coarse(row);
  FineLevel<tall, step> fine(row);
  DistanceLevel<tall, step> distances(row);
  int sums[kMostPixels], counts[kMostPixels];
  WalkRow(row.width, fine, SegmentsOfRanges(medians, medians), [&](int x) {
    const int count = coarse.Below(kSegments) + kBias;
    // Of the samples below the median the distance counts, of the others its opposite.
    const int ofAll = distances.Below(kSegments) - (256 - medians[x]) * count;
    const DistanceBelow below(fine, coarse, distances, medians[x]);
    counts[x] = count, sums[x] = 2 * (below.sum + Total(below.inSegment)) - ofAll;
    coarse.Step(), distances.Step();
  });
  for (int x = 0; x < row.width; ++x) out[x] = static_cast<float>(sums[x]) / static_cast<float>(counts[x]);
}

class ModeReadOut {
 public:
  LANES_INLINE_METHOD ModeReadOut() {
    for (int d = 0; d < kTable; ++d) {
      fromZero_[d] = static_cast<int16_t>(d >= 255 ? kBias - 1 : -kBias);
      upToZero_[d] = static_cast<int16_t>(d <= 255 ? kBias - 1 : -kBias);
    }
    for (int v = 0; v < 256; ++v) values_[v] = static_cast<int16_t>(v);
  }

  template <bool tall>
  LANES_INLINE_METHOD uint8_t Read(const FineLevel<tall>& fine, int lowest, int highest) const {
    // In each lane the largest count so far and the lowest value that has it.
    Lanes counts = EveryLane(-kBias), values = EveryLane(0);
    const int16_t *const from = fromZero_ + 255 - lowest, *const upTo = upToZero_ + 255 - highest;
    for (int s = lowest / 16; s <= highest / 16; ++s) {
      const Lanes inRange = SmallerLanes(LoadLanes(from + 16 * s), LoadLanes(upTo + 16 * s));
      const Lanes candidates = SmallerLanes(fine.segment(static_cast<size_t>(s)), inRange);
      const Lanes better = IsAbove(candidates, counts);
      counts = LargerLanes(counts, candidates);
      values = (LoadLanes(values_ + 16 * s) & better) | Without(values, better);
    }
    const Lanes rarer = IsAbove(EveryLane(LargestLane(counts)), counts);
    return static_cast<uint8_t>(SmallestLane(values | (rarer & EveryLane(0x7fff))));
  }

 private:
  static constexpr int kTable = 255 + 256;
  int16_t fromZero_[kTable], upToZero_[kTable];  // by value + 255: the most that counts, from 0 on and up to 0
  int16_t values_[256];
};

template <bool tall>
void Mode(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  const ModeReadOut mode;
  FineLevel<tall> fine(row);
  WalkRow(row.width, fine, SegmentsOfRanges(lowest, highest),
          [&](int x) { out[x] = mode.Read(fine, lowest[x], highest[x]); });
}

}  // namespace

extern const HistogramKernels kHistogramKernels[3];
const HistogramKernels kHistogramKernels[3] = {
    {Rank<false>, RangeMedian<false>, RangeMean<false>, Deviation<false>, Mode<false>},
    {Rank<true>, RangeMedian<true>, RangeMean<true>, Deviation<true>, Mode<true>},
    {Rank<false, 2>, nullptr, nullptr, Deviation<false, 2>, nullptr}};

}  // namespace quentara::KERNEL_TARGET
