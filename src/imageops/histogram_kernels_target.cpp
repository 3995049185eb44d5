// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// One engine walks a row of windows over column histograms; a filter adds its read-out. A window keeps a coarse level
// (the number of samples in each segment of 16 values) and those segments that the read-out asks for, and moves by one
// column in and one column out. No result depends on the way there.
#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

constexpr int kSegments = 16;
constexpr int kBlock = 32;  // pixels for which a range read-out tracks the same segments

LANES_INLINE int Smaller(int a, int b) {
  return a < b ? a : b;
}
LANES_INLINE int Larger(int a, int b) {
  return a > b ? a : b;
}

// Row b counts lanes 0 .. b - 1.
struct FirstLanes {
  uint16_t ones[17][16] = {};
  constexpr FirstLanes() {
    for (int b = 0; b < 17; ++b)
      for (int lane = 0; lane < b; ++lane) ones[b][lane] = 1;
  }
};
alignas(64) constexpr FirstLanes kFirstLanes;

class Window {
 public:
  LANES_INLINE_METHOD explicit Window(const HistogramRow& row) : row_(row), coarse_(NoLanes()) {
    if (row.coarse != nullptr) coarse_ = Gather(row.coarse);
    for (Lanes& segment : segments_) segment = NoLanes();
  }

  // From now on exactly the segments first .. last are up to date.
  LANES_INLINE_METHOD void Track(int first, int last) {
    for (int s = first; s <= last; ++s)
      if (s < first_ || s > last_) segments_[s] = Gather(row_.fine + static_cast<size_t>(s) * row_.pitch);
    first_ = first, last_ = last;
  }

  LANES_INLINE_METHOD void Step() {
    const size_t leaving = 16 * static_cast<size_t>(x_), entering = leaving + 16 * static_cast<size_t>(row_.side);
    const uint8_t* segment = row_.fine + static_cast<size_t>(first_) * row_.pitch;
    for (int s = first_; s <= last_; ++s, segment += row_.pitch)
      segments_[s] = segments_[s] + (WidenBytes(segment + entering) - WidenBytes(segment + leaving));
    if (row_.coarse != nullptr)
      coarse_ = coarse_ + (WidenBytes(row_.coarse + entering) - WidenBytes(row_.coarse + leaving));
    ++x_;
  }

  // Brings the coarse level into the form that CountBelow and ValueOfRank read.
  LANES_INLINE_METHOD void SumUp() {
    sums_ = RunningSums(coarse_);
    StoreLanes(sums_, below_ + 1);
  }

  // The number of samples below 16 * segment + lanes; lanes <= 16. The segment is tracked.
  LANES_INLINE_METHOD WideLanes InSegment(int segment, int lanes) const {
    return MultiplyAdd(segments_[segment], LoadLanes(kFirstLanes.ones[lanes]));
  }
  LANES_INLINE_METHOD int BelowSegment(int segment) const { return below_[segment]; }

  LANES_INLINE_METHOD int ValueOfRank(int rank) {
    const int segment = CountNotAbove(sums_, rank);
    if (__builtin_expect(segment < first_ || segment > last_, 0)) {
      const int first = segment > last_ ? Larger(segment - 1, 0) : segment;
      Track(first, Smaller(first + 1, kSegments - 1));
    }
    return 16 * segment + CountNotAbove(RunningSums(segments_[segment]), rank - below_[segment]);
  }

  LANES_INLINE_METHOD const Lanes& segment(int s) const { return segments_[s]; }

 private:
  LANES_INLINE_METHOD Lanes Gather(const uint8_t* segment) const {
    Lanes sum = NoLanes();
    const uint8_t* column = segment + 16 * static_cast<size_t>(x_);
    for (int i = 0; i < row_.side; ++i, column += 16) sum = sum + WidenBytes(column);
    return sum;
  }

  const HistogramRow row_;
  int x_ = 0, first_ = 0, last_ = -1;  // the tracked segments
  Lanes coarse_, sums_;
  uint16_t below_[kSegments + 1] = {};  // samples below each segment
  Lanes segments_[kSegments];
};

template <class ReadOut>
LANES_INLINE void WalkRow(const HistogramRow& row, const ReadOut& readOut) {
  Window window(row);
  for (int x = 0; x < row.width;) {
    const int end = Smaller(x + kBlock, row.width);
    readOut.Prepare(window, x, end);
    for (; x < end; ++x) {
      readOut.Read(window, x);
      window.Step();
    }
  }
}

// Tracks the segments that hold the values within limit of centre[x] .. centre[end - 1].
LANES_INLINE void TrackNear(const uint8_t* centre, int limit, int x, int end, Window& window) {
  uint8_t least = 255, most = 0;
  for (; x < end; ++x) {
    least = centre[x] < least ? centre[x] : least;
    most = centre[x] > most ? centre[x] : most;
  }
  window.Track(Larger(least - limit, 0) / 16, Smaller(most + limit, 255) / 16);
}

struct RankReadOut {
  const int* ranks;
  uint8_t* out;

  LANES_INLINE_METHOD void Prepare(Window&, int, int) const {}
  LANES_INLINE_METHOD void Read(Window& window, int x) const {
    window.SumUp();
    out[x] = static_cast<uint8_t>(window.ValueOfRank(ranks[x]));
  }
};

struct RangeMedianReadOut {
  const uint8_t* centre;
  int limit;
  bool largeWindows;
  uint8_t* out;

  LANES_INLINE_METHOD void Prepare(Window& window, int x, int end) const { TrackNear(centre, limit, x, end, window); }
  LANES_INLINE_METHOD void Read(Window& window, int x) const {
    const int lowest = Larger(centre[x] - limit, 0), highest = Smaller(centre[x] + limit, 255);
    window.SumUp();
    // With b samples below the range and e up to its end, the lower median has rank b + (e - b - 1) / 2.
    const WideLanes below = window.InSegment(lowest / 16, lowest % 16);
    const WideLanes upTo = window.InSegment(highest / 16, highest % 16 + 1);
    // A counter above 32767 lacks 65536 in a sum; each sum on its own is below that.
    const int inSegments = largeWindows ? (Total(below) & 0xffff) + (Total(upTo) & 0xffff) : Total(below + upTo);
    const int twice = window.BelowSegment(lowest / 16) + window.BelowSegment(highest / 16) + inSegments;
    out[x] = static_cast<uint8_t>(window.ValueOfRank((twice - 1) / 2));
  }
};

class RangeMeanReadOut {
 public:
  LANES_INLINE_METHOD RangeMeanReadOut(const uint8_t* centre, int limit, uint8_t* out)
      : centre_(centre), limit_(limit), out_(out) {
    for (int d = 0; d < kTable; ++d) {
      counted_[d] = d >= 15 && d <= 15 + 2 * limit ? 1 : 0;
      offset_[d] = static_cast<uint16_t>(counted_[d] * (d - 15));
    }
  }

  LANES_INLINE_METHOD void Prepare(Window& window, int x, int end) const { TrackNear(centre_, limit_, x, end, window); }
  LANES_INLINE_METHOD void Read(Window& window, int x) const {
    const int lowest = centre_[x] - limit_, last = Smaller(centre_[x] + limit_, 255) / 16;
    WideLanes counts = NoWideLanes(), offsets = NoWideLanes();
    for (int s = Larger(lowest, 0) / 16; s <= last; ++s) {
      const int at = 16 * s - lowest + 15;
      counts = counts + MultiplyAdd(window.segment(s), LoadLanes(counted_ + at));
      offsets = offsets + MultiplyAdd(window.segment(s), LoadLanes(offset_ + at));
    }
    const int count = Total(counts), sum = Total(offsets) + lowest * count;
    out_[x] = static_cast<uint8_t>(static_cast<int>(static_cast<float>(sum) / static_cast<float>(count) + 0.5f));
  }

 private:
  static constexpr int kTable = 2 * 255 + 1 + 2 * 15;
  const uint8_t* const centre_;
  const int limit_;
  uint8_t* const out_;
  uint16_t counted_[kTable], offset_[kTable];  // by value - lowest + 15: 1 and value - lowest inside the range, else 0
};

class DeviationReadOut {
 public:
  LANES_INLINE_METHOD DeviationReadOut(const uint8_t* medians, int* sums) : medians_(medians), sums_(sums) {
    for (int d = 0; d < kTable; ++d) distance_[d] = static_cast<uint16_t>(d < 255 ? 255 - d : d - 255);
  }

  LANES_INLINE_METHOD void Prepare(Window& window, int, int) const { window.Track(0, kSegments - 1); }
  LANES_INLINE_METHOD void Read(Window& window, int x) const {
    WideLanes sum = NoWideLanes();
    for (int s = 0; s < kSegments; ++s)
      sum = sum + MultiplyAdd(window.segment(s), LoadLanes(distance_ + 255 + 16 * s - medians_[x]));
    sums_[x] = Total(sum);
  }

 private:
  static constexpr int kTable = 511;
  const uint8_t* const medians_;
  int* const sums_;
  uint16_t distance_[kTable];  // by value - median + 255
};

class ModeReadOut {
 public:
  static constexpr bool kCoarse = false;

  LANES_INLINE_METHOD ModeReadOut(const uint8_t* lowest, const uint8_t* highest, uint8_t* out)
      : lowest_(lowest), highest_(highest), out_(out) {
    for (int d = 0; d < kTable; ++d) fromZero_[d] = d >= 255 ? 0xffff : 0, upToZero_[d] = d <= 255 ? 0xffff : 0;
    for (int v = 0; v < 256; ++v) values_[v] = static_cast<uint16_t>(v);
  }

  template <class W>
  LANES_INLINE_METHOD void Prepare(W& window, int x, int end) const {
    uint8_t least = 255, most = 0;
    for (; x < end; ++x) {
      least = lowest_[x] < least ? lowest_[x] : least;
      most = highest_[x] > most ? highest_[x] : most;
    }
    window.Track(least / 16, most / 16);
  }
  template <class W>
  LANES_INLINE_METHOD void Read(W& window, int x) const {
    // In each lane the largest count so far and the lowest value that has it.
    Lanes counts = NoLanes(), values = NoLanes();
    const uint16_t *const from = fromZero_ + 255 - lowest_[x], *const upTo = upToZero_ + 255 - highest_[x];
    for (int s = lowest_[x] / 16; s <= highest_[x] / 16; ++s) {
      // A count above 32767 is more than half of the window: it stays the largest when it is lowered.
      const Lanes candidates = AtMost32767(window.segment(s)) & LoadLanes(from + 16 * s) & LoadLanes(upTo + 16 * s);
      const Lanes better = IsAbove(candidates, counts);
      counts = LargerLanes(counts, candidates);
      values = (LoadLanes(values_ + 16 * s) & better) | Without(values, better);
    }
    const Lanes rarer = IsAbove(EveryLane(LargestLane(counts)), counts);
    out_[x] = static_cast<uint8_t>(SmallestLane(values | (rarer & EveryLane(0x7fff))));
  }

 private:
  static constexpr int kTable = 255 + 256;
  const uint8_t* const lowest_;
  const uint8_t* const highest_;
  uint8_t* const out_;
  uint16_t fromZero_[kTable], upToZero_[kTable];  // by value + 255: all bits from 0 on, and up to 0
  uint16_t values_[256];
};

void Rank(const HistogramRow& row, const int* ranks, uint8_t* out) {
  WalkRow(row, RankReadOut{ranks, out});
}

void RangeMedian(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  WalkRow(row, RangeMedianReadOut{centre, limit, row.largeWindows, out});
}

void RangeMean(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out) {
  WalkRow(row, RangeMeanReadOut(centre, limit, out));
}

void Deviation(const HistogramRow& row, const uint8_t* medians, int* sums) {
  WalkRow(row, DeviationReadOut(medians, sums));
}

void Mode(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out) {
  WalkRow(row, ModeReadOut(lowest, highest, out));
}

}  // namespace

extern const HistogramKernels kHistogramKernels;
const HistogramKernels kHistogramKernels = {Rank, RangeMedian, RangeMean, Deviation, Mode};

}  // namespace quentara::KERNEL_TARGET
