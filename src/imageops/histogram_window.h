/// The histogram of the window of one pixel, gathered from the histograms of its columns and moved along a row.
///
/// Three levels, each moved by `step` columns in and as many out; a read-out takes those that it needs:
///   - `FineLevel`: inside some segments of 16 values, how many samples are below each value,
///   - `CoarseLevel`: how many samples lie in the segments below each segment,
///   - `DistanceLevel`: how far the samples lie below each segment, together.
/// All counters are running sums, so that a count below a value is a look-up and a rank a comparison; no result depends
/// on the way there. Counts are kept kBias too low: signed instructions then see all of 0..65535 in order.
///
/// Where columns are tall, with more than 127 samples, their differences do not fit signed bytes.
///
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET.
#pragma once

#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {

constexpr int kSegments = 16;
constexpr int kBias = 32768;

LANES_INLINE int Smaller(int a, int b) {
  return a < b ? a : b;
}
LANES_INLINE int Larger(int a, int b) {
  return a > b ? a : b;
}

// How the counters of a window change when `step` columns enter and as many leave.
template <bool tall, int step>
LANES_INLINE Lanes ChangeOf(const uint8_t* entering, const uint8_t* leaving) {
  if constexpr (step > 1)
    return ChangeOf<tall, 1>(entering, leaving) + ChangeOf<tall, step - 1>(entering + 16, leaving + 16);
  else if constexpr (tall)
    return WidenBytes(entering) - WidenBytes(leaving);
  else
    return SmallDifferences(entering, leaving);
}

LANES_INLINE Lanes SumOfColumns(const uint8_t* column, int columns) {
  Lanes sum = EveryLane(-kBias);
#pragma GCC unroll 4
  for (; columns > 0; --columns, column += 16) sum = sum + WidenBytes(column);
  return sum;
}

// Lanes 0 .. lane of kLanesUpTo + 15 - lane are 1, the others 0.
alignas(64) constexpr int16_t kLanesUpTo[32] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};

template <bool tall, int step = 1>
class FineLevel {
 public:
  LANES_INLINE_METHOD explicit FineLevel(const HistogramRow& row) : row_(row) {
    for (int16_t& counter : below_) counter = static_cast<int16_t>(-kBias);
  }

  // From now on the segments first .. last are up to date, for the window of pixel x.
  LANES_INLINE_METHOD void Track(int x, int first, int last) {
    const int count = Unrolled(last - first + 1);
    first = Smaller(first, kSegments - count), last = first + count - 1;
    for (int s = first; s <= last; ++s)
      if (s < first_ || s > last_) StoreLanes(SumOfColumns(Column(s, x), row_.side), below_ + 16 * s);
    first_ = first, last_ = last;
  }

  // Calls read(x) for the windows from x to before end, which stands for pixel end at the end.
  template <int count = 1, class Read>
  LANES_INLINE_METHOD void Walk(int x, int end, const Read& read) {
    if constexpr (tall)
      WalkTallColumns(x, end, read);
    else if (last_ - first_ + 1 == count)
      WalkSegments<count>(x, end, read);
    else if constexpr (count < kSegments)
      Walk<Unrolled(count + 1)>(x, end, read);
  }

  // How many samples of the value's segment are below the value, with the bias. The segment is tracked, or the value is
  // the segment's first one or 256.
  LANES_INLINE_METHOD int Below(size_t value) const { return below_[value]; }
  LANES_INLINE_METHOD Lanes segment(size_t s) const { return LoadLanes(below_ + 16 * s); }
  // Of the values of a tracked segment, the one of a rank, which carries the bias.
  LANES_INLINE_METHOD size_t ValueOfRank(size_t s, int rank) const {
    return 16 * s + 15 - CountAbove(segment(s), rank);
  }

 private:
  // The numbers of segments that there is a loop for.
  LANES_INLINE_METHOD static constexpr int Unrolled(int count) {
    return count <= 6 ? count : count <= 8 ? 8 : count <= 12 ? 12 : kSegments;
  }

  LANES_INLINE_METHOD const uint8_t* Column(int segment, int x) const {
    return row_.columns.fine + static_cast<size_t>(segment) * kSegmentPitch + 16 * step * static_cast<size_t>(x);
  }

  // The segments ride in registers; what is stored serves look-ups.
  template <int count, class Read>
  LANES_INLINE_METHOD void WalkSegments(int x, int end, const Read& read) {
    const uint8_t* column = Column(first_, x);
    const size_t window = 16 * static_cast<size_t>(row_.side);
    int16_t* const below = below_ + 16 * first_;
    Lanes segments[count];
    for (int s = 0; s < count; ++s) segments[s] = LoadLanes(below + 16 * s);
    for (; x < end; ++x, column += 16 * step) {
      read(x);
#pragma GCC unroll 16
      for (int s = 0; s < count; ++s) {
        const uint8_t* const leaving = column + static_cast<size_t>(s) * kSegmentPitch;
        segments[s] = segments[s] + ChangeOf<tall, step>(leaving + window, leaving);
        StoreLanes(segments[s], below + 16 * s);
      }
    }
  }

  template <class Read>
  LANES_INLINE_METHOD void WalkTallColumns(int x, int end, const Read& read) {
    const size_t window = 16 * static_cast<size_t>(row_.side);
    for (; x < end; ++x) {
      read(x);
      for (int s = first_; s <= last_; ++s) {
        const uint8_t* const leaving = Column(s, x);
        StoreLanes(segment(static_cast<size_t>(s)) + ChangeOf<tall, step>(leaving + window, leaving), below_ + 16 * s);
      }
    }
  }

  const HistogramRow& row_;
  int first_ = 0, last_ = -1;  // the tracked segments
  alignas(64) int16_t below_[16 * (kSegments + 1)];
};

template <bool tall, int step = 1>
class CoarseLevel {
 public:
  LANES_INLINE_METHOD explicit CoarseLevel(const HistogramRow& row)
      : window_(16 * row.side), column_(row.columns.coarse), sums_(SumOfColumns(column_, row.side)) {
    below_[15] = static_cast<int16_t>(-kBias);
    StoreLanes(sums_, below_ + 16);
  }

  LANES_INLINE_METHOD void Step() {
    sums_ = sums_ + ChangeOf<tall, step>(column_ + window_, column_);
    StoreLanes(sums_, below_ + 16);
    column_ += 16 * step;
  }

  // How many samples lie below the segment 0..16, with the bias.
  LANES_INLINE_METHOD int Below(size_t segment) const { return below_[15 + segment]; }
  // The segment that holds the sample of a rank, which carries the bias.
  LANES_INLINE_METHOD size_t SegmentOfRank(int rank) const { return kSegments - CountAbove(sums_, rank); }

 private:
  const ptrdiff_t window_;
  const uint8_t* column_;
  Lanes sums_;
  alignas(64) int16_t below_[32];  // from index 15 on
};

template <bool tall, int step = 1>
class DistanceLevel {
 public:
  LANES_INLINE_METHOD explicit DistanceLevel(const HistogramRow& row)
      : window_(16 * row.side), column_(row.columns.distances), low_(NoWideLanes()), high_(NoWideLanes()) {
    below_[7] = 0;
    for (int i = 0; i < row.side; ++i) MoveTall(Lowered(column_ + 16 * i), EveryLane(-kBias));
  }

  LANES_INLINE_METHOD void Step() {
    for (int i = 0; i < step; ++i, column_ += 16) {
      const Lanes change = Load(column_ + window_) - Load(column_);
      if constexpr (tall)
        MoveTall(Lowered(column_ + window_), Lowered(column_));
      else
        Move(WidenLow(change), WidenHigh(change));
    }
  }

  // The sum of end - v over the samples v below end = 16 * segment; the segment is 0..16.
  LANES_INLINE_METHOD int Below(size_t segment) const { return below_[7 + segment]; }

 private:
  LANES_INLINE_METHOD static Lanes Load(const uint16_t* column) {
    return LoadLanes(reinterpret_cast<const int16_t*>(column));
  }
  // Unsigned counters, lowered so that they can be widened as signed ones.
  LANES_INLINE_METHOD static Lanes Lowered(const uint16_t* column) { return Load(column) + EveryLane(-kBias); }
  LANES_INLINE_METHOD void MoveTall(Lanes entering, Lanes leaving) {
    Move(WidenLow(entering) - WidenLow(leaving), WidenHigh(entering) - WidenHigh(leaving));
  }
  LANES_INLINE_METHOD void Move(WideLanes lowChange, WideLanes highChange) {
    low_ = low_ + lowChange, high_ = high_ + highChange;
    StoreWideLanes(low_, below_ + 8), StoreWideLanes(high_, below_ + 16);
  }

  const ptrdiff_t window_;
  const uint16_t* column_;
  WideLanes low_, high_;
  alignas(64) int32_t below_[24];  // from index 7 on
};

}  // namespace quentara::KERNEL_TARGET
