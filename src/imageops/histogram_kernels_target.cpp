// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// The read-outs of the strip engine: what each filter makes of the histogram of a window. A row is taken in blocks of
// pixels for which the window tracks the same segments, those that the block's read-outs ask for.
#include "imageops/histogram_window.h"
#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

constexpr int kBlock = 32;

template <class Block>
LANES_INLINE void ForBlocks(int width, const Block& block) {
  for (int x = 0; x < width; x += kBlock) block(x, Smaller(x + kBlock, width));
}

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

void Rank(const HistogramRow& row, const int* ranks, uint8_t* out) {
  CoarseLevel coarse(row);
  FineLevel fine(row);
  ForBlocks(row.width, [&](int x, int end) {
    uint8_t segments[kBlock];
    int inSegment[kBlock];
    for (int i = x; i < end; ++i) {
      const int rank = ranks[i] - kBias, segment = coarse.SegmentOfRank(rank);
      segments[i - x] = static_cast<uint8_t>(segment);
      inSegment[i - x] = rank - coarse.Below(segment) - kBias;
      coarse.Step();
    }
    const Extent touched = ExtentOf(segments, 0, end - x);
    fine.Track(x, touched.least, touched.most);
    fine.Walk(x, end,
              [&](int i) { out[i] = static_cast<uint8_t>(fine.ValueOfRank(segments[i - x], inSegment[i - x])); });
  });
}

void RangeMedian(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  CoarseLevel coarse(row);
  FineLevel fine(row);
  ForBlocks(row.width, [&](int x, int end) {
    const Extent centres = ExtentOf(centre, x, end);
    fine.Track(x, Larger(centres.least - limit, 0) / 16, Smaller(centres.most + limit, 255) / 16);
    fine.Walk(x, end, [&](int i) {
      const int lowest = Larger(centre[i] - limit, 0), past = Smaller(centre[i] + limit, 255) + 1;
      const int below = fine.Below(lowest) + coarse.Below(lowest / 16);
      const int upTo = fine.Below(past) + coarse.Below(past / 16);
      // With b samples below the range and e up to its end, the lower median has rank b + (e - b - 1) / 2.
      const int rank = (below + upTo + 4 * kBias - 1) / 2 - kBias, segment = coarse.SegmentOfRank(rank);
      out[i] = static_cast<uint8_t>(fine.ValueOfRank(segment, rank - coarse.Below(segment) - kBias));
      coarse.Step();
    });
  });
}

// The sum of value - v over the samples v below a value.
LANES_INLINE int DistanceBelow(const FineLevel& fine, const CoarseLevel& coarse, const DistanceLevel& distances,
                               int value) {
  const int segment = value / 16, lane = value % 16;
  const WideLanes inSegment = MultiplyAdd(fine.segment(segment), LoadLanes(kLanesUpTo + 15 - lane));
  return distances.Below(segment) + lane * (coarse.Below(segment) + kBias) + Total(inSegment) + (lane + 1) * kBias;
}

void RangeMean(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  CoarseLevel coarse(row);
  FineLevel fine(row);
  DistanceLevel distances(row);
  ForBlocks(row.width, [&](int x, int end) {
    const Extent centres = ExtentOf(centre, x, end);
    fine.Track(x, Larger(centres.least - limit, 0) / 16, Smaller(centres.most + limit, 255) / 16);
    int sums[kBlock] = {}, counts[kBlock];
    for (int& count : counts) count = 1;
    fine.Walk(x, end, [&](int i) {
      const int lowest = Larger(centre[i] - limit, 0), past = Smaller(centre[i] + limit, 255) + 1;
      const int below = fine.Below(lowest) + coarse.Below(lowest / 16) + 2 * kBias;
      const int count = fine.Below(past) + coarse.Below(past / 16) + 2 * kBias - below;
      const int shortfall = DistanceBelow(fine, coarse, distances, past) -
                            DistanceBelow(fine, coarse, distances, lowest) - (past - lowest) * below;
      counts[i - x] = count, sums[i - x] = past * count - shortfall;
      coarse.Step(), distances.Step();
    });
    for (int i = x; i < end; ++i)
      out[i] = static_cast<uint8_t>(
          static_cast<int>(static_cast<float>(sums[i - x]) / static_cast<float>(counts[i - x]) + 0.5f));
  });
}

void Deviation(const HistogramRow& row, const uint8_t* medians, int* sums) {
  CoarseLevel coarse(row);
  FineLevel fine(row);
  DistanceLevel distances(row);
  ForBlocks(row.width, [&](int x, int end) {
    const Extent touched = ExtentOf(medians, x, end);
    fine.Track(x, touched.least / 16, touched.most / 16);
    fine.Walk(x, end, [&](int i) {
      // Of the samples below the median the distance counts, of the others its opposite.
      const int above = distances.Below(kSegments) - (256 - medians[i]) * (coarse.Below(kSegments) + kBias);
      sums[i] = 2 * DistanceBelow(fine, coarse, distances, medians[i]) - above;
      coarse.Step(), distances.Step();
    });
  });
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

  LANES_INLINE_METHOD uint8_t Read(const FineLevel& fine, int lowest, int highest) const {
    // In each lane the largest count so far and the lowest value that has it.
    Lanes counts = EveryLane(-kBias), values = EveryLane(0);
    const int16_t *const from = fromZero_ + 255 - lowest, *const upTo = upToZero_ + 255 - highest;
    for (int s = lowest / 16; s <= highest / 16; ++s) {
      const Lanes inRange = SmallerLanes(LoadLanes(from + 16 * s), LoadLanes(upTo + 16 * s));
      const Lanes candidates = SmallerLanes(fine.segment(s), inRange);
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

void Mode(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  const ModeReadOut mode;
  FineLevel fine(row);
  ForBlocks(row.width, [&](int x, int end) {
    fine.Track(x, ExtentOf(lowest, x, end).least / 16, ExtentOf(highest, x, end).most / 16);
    fine.Walk(x, end, [&](int i) { out[i] = mode.Read(fine, lowest[i], highest[i]); });
  });
}

}  // namespace

extern const HistogramKernels kHistogramKernels;
const HistogramKernels kHistogramKernels = {Rank, RangeMedian, RangeMean, Deviation, Mode};

}  // namespace quentara::KERNEL_TARGET
