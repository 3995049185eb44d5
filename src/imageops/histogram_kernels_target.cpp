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

LANES_FUNCTION Extent ExtentOf(const uint8_t* values, int from, int to) {
  uint8_t least = 255, most = 0;
  for (int i = from; i < to; ++i) {
    least = values[i] < least ? values[i] : least;
    most = values[i] > most ? values[i] : most;
  }
  return {least, most};
}

// Walks a row in blocks of pixels whose read-outs touch few segments; touched(x, end) are the values that they need.
template <class Level, class Touched, class Read>
LANES_INLINE void WalkRow(int width, Level& fine, const Touched& touched, const Read& read) {
  constexpr int kMost = 32, kLeast = 8, kFew = 128 / Level::kLanes;
  for (int x = 0, end = 0; x < width; x = end) {
    end = Smaller(x + kMost, width);
    const auto segments = [&] {
      const Extent values = touched(x, end);
      return Extent{values.least / Level::kLanes, values.most / Level::kLanes};
    };
    Extent few = segments();
    while (few.most - few.least >= kFew && end - x > kLeast) {
      end = x + Larger((end - x) / 2, kLeast);
      few = segments();
    }
    fine.Track(x, few.least, few.most);
    fine.Walk(x, end, read);
  }
}

// The values near the centres of a row.
struct Ranges {
  LANES_INLINE_METHOD Ranges(const uint8_t* centre, int limit, int width) {
    for (int x = 0; x < width; ++x) {
      lowest[x] = static_cast<uint8_t>(Larger(centre[x] - limit, 0));
      highest[x] = static_cast<uint8_t>(Smaller(centre[x] + limit, 255));
    }
  }
  LANES_INLINE_METHOD Extent operator()(int from, int to) const {
    return {ExtentOf(lowest, from, to).least, ExtentOf(highest, from, to).most};
  }

  uint8_t lowest[kMostPixels], highest[kMostPixels];
};

template <bool tall, int step = 1>
void Rank(const HistogramRow& row, const int* ranks, uint8_t* out) {
  CoarseLevel<tall, step> coarse(row);
  FineLevel<Lanes, tall, step, true> fine(row);
  uint8_t segmentStarts[kMostPixels];
  int inSegment[kMostPixels];
  for (int x = 0; x < row.width; ++x) {
    const int rank = ranks[x] - kBias;
    const size_t segment = coarse.SegmentOfRank(rank);
    segmentStarts[x] = static_cast<uint8_t>(16 * segment);
    inSegment[x] = rank - coarse.Below(segment) - kBias;
    coarse.Step();
  }
  WalkRow(
      row.width, fine, [&](int x, int end) { return ExtentOf(segmentStarts, x, end); },
      [&](int x, const auto&) { out[x] = static_cast<uint8_t>(fine.ValueOfRank(segmentStarts[x], inSegment[x])); });
}

// With b samples below a range and e up to its end, its lower median has rank b + (e - b - 1) / 2.
LANES_FUNCTION int RankOfLowerMedian(int below, int upTo) {
  return (below + upTo - 1) >> 1;
}

// In a line down a column the histogram of the column is the window's.
void RangeMedianOfColumns(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  const uint8_t *fine = row.columns.fine, *coarse = row.columns.coarse;
  alignas(16) uint8_t belowSegment[32];  // from index 15 on
  belowSegment[15] = 0;
  const Ranges ranges(centre, limit, row.width);
  for (int x = 0; x < row.width; ++x, fine += 16, coarse += 16) {
    const SixteenBytes sums = SixteenBytes::Load(coarse);
    sums.Store(belowSegment + 16);
    const size_t first = ranges.lowest[x], past = ranges.highest[x] + size_t{1};
    const int below = belowSegment[15 + first / 16] + fine[first / 16 * SegmentPitch(16) + first % 16];
    const int upTo = belowSegment[15 + past / 16] + fine[past / 16 * SegmentPitch(16) + past % 16];
    const int rank = RankOfLowerMedian(below, upTo);
    const size_t segment = CountNotAbove(sums, rank);
    const SixteenBytes counters = SixteenBytes::Load(fine + segment * SegmentPitch(16));
    out[x] = static_cast<uint8_t>(16 * segment + CountNotAbove(counters, rank - belowSegment[15 + segment]) - 1);
  }
}

template <bool tall>
void RangeMedian(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  if (row.side == 1) return RangeMedianOfColumns(row, centre, limit, out);
  const Ranges ranges(centre, limit, row.width);
  CoarseLevel<tall> coarse(row);
  FineLevel<Lanes, tall, 1, true> fine(row);
  WalkRow(row.width, fine, ranges, [&](int x, const auto&) {
    const size_t first = ranges.lowest[x], past = ranges.highest[x] + size_t{1};
    const int below = fine.Below(first) + coarse.Below(first / 16);
    const int upTo = fine.Below(past) + coarse.Below(past / 16);
    const int rank = RankOfLowerMedian(below, upTo);  // the bias is in it twice, as in either count
    const size_t segment = coarse.SegmentOfRank(rank + kBias);
    out[x] = static_cast<uint8_t>(fine.ValueOfRank(16 * segment, rank - coarse.Below(segment)));
    coarse.Step();
  });
}

// What each value weighs around a centre, by its distance from the lowest of the near ones.
class WeightsByDistance {
 public:
  template <class Weight>
  LANES_INLINE_METHOD WeightsByDistance(int limit, int outside, const Weight& weight) : limit_(limit) {
    for (int16_t& other : weights_) other = static_cast<int16_t>(outside);
    for (int d = 0; d <= 2 * limit; ++d) weights_[255 + d] = static_cast<int16_t>(weight(d));
  }

  // Those of the values from `first` on, around a centre.
  LANES_INLINE_METHOD const int16_t* Of(int first, int centre) const {
    return weights_ + 255 + first - centre + limit_;
  }

 private:
  const int limit_;
  int16_t weights_[255 + 511 + 256];
};

// Counts and sums of distances at once, the distances from the lowest value near a centre: their sum takes the lower 15
// bits, and every sample takes 1 from the others.
template <bool tall>
void SmallRangeMean(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* __restrict out) {
  const WeightsByDistance weights(limit, 0, [](int d) { return d - kBias; });
  FineLevel<FineLanes, tall, 1, false> fine(row);
  const Ranges ranges(centre, limit, row.width);
  uint32_t totals[kMostPixels][4];  // of each, the sum counts, which may wrap
  WalkRow(row.width, fine, ranges, [&](int x, const auto& segments) {
    const int16_t* const weight = weights.Of(fine.first() * FineLanes::kCount, centre[x]);
    FineProducts sum = FineProducts::None();
    ForSegments(segments, [&](FineLanes counters, int s) {
      sum = AddProducts(sum, counters, FineLanes::Load(weight + FineLanes::kCount * s));
    });
    StoreQuarters(sum, totals[x]);
  });
  for (int x = 0, width = row.width; x < width; ++x) {
    // Each of the counters lacks the bias.
    const int lowest = ranges.lowest[x], highest = ranges.highest[x], values = highest - lowest + 1;
    const int first = centre[x] - limit;
    const auto twiceAllDistances = static_cast<uint32_t>((lowest + highest - 2 * first) * values);
    const uint32_t lacking = kBias / 2 * twiceAllDistances - (uint32_t{kBias} * kBias) * static_cast<uint32_t>(values);
    const int total = static_cast<int>(totals[x][0] + totals[x][1] + totals[x][2] + totals[x][3] + lacking);
    const int count = -(total >> 15), sum = (total & (kBias - 1)) + first * count;
    out[x] = static_cast<uint8_t>(static_cast<int>(static_cast<float>(sum) / static_cast<float>(count) + 0.5f));
  }
}

template <bool tall>
void RangeMean(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* __restrict out) {
  if (2 * limit * row.mostSamples < kBias) return SmallRangeMean<tall>(row, centre, limit, out);
  const WeightsByDistance depths(limit, 0, [](int d) { return d + 1; }), presence(limit, 0, [](int) { return 1; });
  FineLevel<FineLanes, tall, 1, false> fine(row);
  const Ranges ranges(centre, limit, row.width);
  uint32_t totals[kMostPixels][4];  // what totals[x][i] and [i + 2] add up to: the depths, the count; may wrap
  WalkRow(row.width, fine, ranges, [&](int x, const auto& segments) {
    const int first = fine.first() * FineLanes::kCount;
    const int16_t *const depth = depths.Of(first, centre[x]), *const present = presence.Of(first, centre[x]);
    FineProducts sum = FineProducts::None(), count = sum;
    ForSegments(segments, [&](FineLanes counters, int s) {
      sum = AddProducts(sum, counters, FineLanes::Load(depth + FineLanes::kCount * s));
      count = AddProducts(count, counters, FineLanes::Load(present + FineLanes::kCount * s));
    });
    StoreTotals(sum, count, totals[x]);
  });
  for (int x = 0, width = row.width; x < width; ++x) {
    // Each of the counters lacks the bias. The depth of a value v is v - beforeRange.
    const int lowest = ranges.lowest[x], highest = ranges.highest[x], values = highest - lowest + 1;
    const int beforeRange = centre[x] - limit - 1;
    const auto twiceAllDepths = static_cast<uint32_t>((lowest + highest - 2 * beforeRange) * values);
    const int count = static_cast<int>(totals[x][1] + totals[x][3]) + kBias * values;
    const int sum = static_cast<int>(totals[x][0] + totals[x][2] + kBias / 2 * twiceAllDepths) + beforeRange * count;
    out[x] = static_cast<uint8_t>(static_cast<int>(static_cast<float>(sum) / static_cast<float>(count) + 0.5f));
  }
}

// Lanes 0 .. lane of kLanesUpTo + 15 - lane are 1, the others 0.
alignas(64) constexpr int16_t kLanesUpTo[32] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

template <bool tall, int step = 1>
void Deviation(const HistogramRow& row, const uint8_t* medians, float* out) {
  CoarseLevel<tall, step> coarse(row);
  FineLevel<Lanes, tall, step, true> fine(row);
  DistanceLevel<tall, step> distances(row);
  int sums[kMostPixels], counts[kMostPixels];
  const auto values = [&](int x, int end) { return ExtentOf(medians, x, end); };
  WalkRow(row.width, fine, values, [&](int x, const auto&) {
    const size_t median = medians[x], segment = median / 16, lane = median % 16;
    const int below = static_cast<int>(lane), count = coarse.Below(kCoarseSegments) + kBias;
    // Of the samples below the median the distance counts, of the others its opposite.
    const int ofAll = distances.Below(kCoarseSegments) - (256 - static_cast<int>(median)) * count;
    const WideLanes inSegment =
        AddProducts(WideLanes::None(), fine.segment(segment), Lanes::Load(kLanesUpTo + 15 - lane));
    const int ofBelow =
        distances.Below(segment) + below * (coarse.Below(segment) + 2 * kBias) + kBias + Total(inSegment);
    counts[x] = count, sums[x] = 2 * ofBelow - ofAll;
    coarse.Step(), distances.Step();
  });
  for (int x = 0, width = row.width; x < width; ++x)
    out[x] = static_cast<float>(sums[x]) / static_cast<float>(counts[x]);
}

struct LaneNumbers {
  constexpr LaneNumbers() {
    for (int i = 0; i < FineLanes::kCount; ++i) lanes[i] = static_cast<int16_t>(i);
  }
  alignas(64) int16_t lanes[FineLanes::kCount] = {};
};
constexpr LaneNumbers kLaneNumbers;

// The lowest of the most frequent values of a window, where limited(segment, s) are the counts that matter.
template <class Segments, class Limited>
LANES_INLINE uint8_t ModeOf(int firstSegment, const Segments& segments, const Limited& limited) {
  FineLanes counts = FineLanes::Every(-kBias), values = FineLanes::Every(0);
  FineLanes theirValues = FineLanes::Load(kLaneNumbers.lanes) + FineLanes::Every(firstSegment * FineLanes::kCount);
  ForSegments(segments, [&](FineLanes counters, int s) {
    KeepLarger(counts, values, limited(counters, s), theirValues);
    theirValues = theirValues + FineLanes::Every(FineLanes::kCount);
  });
  return static_cast<uint8_t>(SmallestOfLargest(counts, values));
}

template <bool tall>
void Mode(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  FineLevel<FineLanes, tall, 1, false> fine(row);
  const auto touched = [&](int x, int end) {
    return Extent{ExtentOf(lowest, x, end).least, ExtentOf(highest, x, end).most};
  };
  WalkRow(row.width, fine, touched, [&](int x, const auto& segments) {
    out[x] = ModeOf(fine.first(), segments, [](FineLanes counts, int) { return counts; });
  });
}

template <bool tall>
void RangeMode(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  const WeightsByDistance most(limit, -kBias, [](int) { return kBias - 1; });
  const Ranges ranges(centre, limit, row.width);
  FineLevel<FineLanes, tall, 1, false> fine(row);
  WalkRow(row.width, fine, ranges, [&](int x, const auto& segments) {
    const int16_t* const upTo = most.Of(fine.first() * FineLanes::kCount, centre[x]);
    out[x] = ModeOf(fine.first(), segments, [=](FineLanes counts, int s) {
      return SmallerLanes(counts, FineLanes::Load(upTo + FineLanes::kCount * s));
    });
  });
}

}  // namespace

extern const HistogramKernels kHistogramKernels[3];
const HistogramKernels kHistogramKernels[3] = {
    {Rank<false>, RangeMedian<false>, RangeMean<false>, Deviation<false>, Mode<false>, RangeMode<false>},
    {Rank<true>, RangeMedian<true>, RangeMean<true>, Deviation<true>, Mode<true>, RangeMode<true>},
    {Rank<false, 2>, nullptr, nullptr, Deviation<false, 2>, nullptr, nullptr}};

}  // namespace quentara::KERNEL_TARGET
