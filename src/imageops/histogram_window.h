/// The histogram of the window of one pixel, gathered from the histograms of its columns and moved along a row.
///
/// Three levels, each moved by `step` columns in and as many out; a read-out takes those that it needs:
///   - `FineLevel`: the counters of some fine segments, of as many values as a kind of lanes has,
///   - `CoarseLevel`: how many samples lie below each coarse segment,
///   - `DistanceLevel`: how far the samples lie below each coarse segment, together.
/// Counters of the kind `kBelow` are running sums, so that a count below a value is a look-up and a rank a comparison.
/// Counts are kept kBias too low: signed instructions then see all of 0..65535 in order.
///
/// Where columns are tall, with more than 127 samples, their differences do not fit signed bytes.
///
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET.
#pragma once

#include "imageops/lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {

constexpr int kBias = 32768;

LANES_FUNCTION int Smaller(int a, int b) {
  return a < b ? a : b;
}
LANES_FUNCTION int Larger(int a, int b) {
  return a > b ? a : b;
}

// How the counters of a window change when `step` columns enter and as many leave.
template <class LanesType, bool tall, int step>
LANES_INLINE LanesType ChangeOf(const uint8_t* entering, const uint8_t* leaving) {
  if constexpr (step > 1)
    return ChangeOf<LanesType, tall, 1>(entering, leaving) +
           ChangeOf<LanesType, tall, step - 1>(entering + LanesType::kCount, leaving + LanesType::kCount);
  else if constexpr (tall)
    return LanesType::Widened(entering) - LanesType::Widened(leaving);
  else
    return LanesType::SmallDifferences(entering, leaving);
}

template <class LanesType>
LANES_INLINE LanesType SumOfColumns(const uint8_t* column, int columns) {
  LanesType sum = LanesType::Every(-kBias);
#pragma GCC unroll 4
  for (; columns > 0; --columns, column += LanesType::kCount) sum = sum + LanesType::Widened(column);
  return sum;
}

/// The counters of the segments that are up to date, where their number is not known beforehand.
template <class LanesType>
struct StoredSegments {
  const int16_t* counters;
  int count;

  LANES_INLINE_METHOD LanesType operator[](int s) const { return LanesType::Load(counters + LanesType::kCount * s); }
};

/// Calls visit(counters, s) for each of some segments.
template <class LanesType, class Visit>
LANES_INLINE void ForSegments(const StoredSegments<LanesType>& segments, const Visit& visit) {
  for (int s = 0; s < segments.count; ++s) visit(segments[s], s);
}
template <class LanesType, int count, class Visit>
LANES_INLINE void ForSegments(const LanesType (&segments)[count], const Visit& visit) {
#pragma GCC unroll 16
  for (int s = 0; s < count; ++s) visit(segments[s], s);
}

/// With `lookUps` single counters can be asked for; without, a read-out takes whole segments only.
template <class LanesType, bool tall, int step, bool lookUps>
class FineLevel {
 public:
  static constexpr int kLanes = LanesType::kCount, kSegments = 256 / kLanes;

  LANES_INLINE_METHOD explicit FineLevel(const HistogramRow& row) : row_(row) {
    for (int16_t& counter : counters_) counter = static_cast<int16_t>(-kBias);
  }

  // From now on the segments first .. last are up to date, for the window of pixel x.
  LANES_INLINE_METHOD void Track(int x, int first, int last) {
    const int count = Unrolled(last - first + 1);
    first = Smaller(first, kSegments - count), last = first + count - 1;
    for (int s = first; s <= last; ++s)
      if (s < first_ || s > last_) SumOfColumns<LanesType>(Column(s, x), row_.side).Store(counters_ + kLanes * s);
    first_ = first, last_ = last;
  }

  // Calls read(x, segments) for the windows from x to before end, which stands for pixel end at the end. segments[i] is
  // the tracked segment first() + i.
  template <int count = 1, class Read>
  LANES_INLINE_METHOD void Walk(int x, int end, const Read& read) {
    if constexpr (tall)
      WalkTallColumns(x, end, read);
    else if (last_ - first_ + 1 == count)
      WalkSegments<count>(x, end, read);
    else if constexpr (count < kSegments)
      Walk<Unrolled(count + 1)>(x, end, read);
  }

  LANES_INLINE_METHOD int first() const { return first_; }

  // How many samples of the value's segment are below the value, with the bias. The segment is tracked, or the value is
  // the segment's first one or 256.
  LANES_INLINE_METHOD int Below(size_t value) const { return counters_[value]; }
  LANES_INLINE_METHOD LanesType segment(size_t s) const { return LanesType::Load(counters_ + kLanes * s); }
  // Of the values of the tracked segment that starts with `first`, the one of a rank, which carries the bias.
  LANES_INLINE_METHOD size_t ValueOfRank(size_t first, int rank) const {
    return first + kLanes - 1 - CountAbove(LanesType::Load(counters_ + first), rank);
  }

 private:
  // The numbers of segments that there is a loop for.
  LANES_INLINE_METHOD static constexpr int Unrolled(int count) {
    return count <= 6 ? count : count <= 8 ? 8 : count <= 12 ? 12 : kSegments;
  }

  LANES_INLINE_METHOD const uint8_t* Column(int segment, int x) const {
    return row_.columns.fine + static_cast<size_t>(segment) * SegmentPitch(kLanes) +
           kLanes * step * static_cast<size_t>(x);
  }

  // The segments ride in registers; what is stored serves look-ups.
  template <int count, class Read>
  LANES_INLINE_METHOD void WalkSegments(int x, int end, const Read& read) {
    const uint8_t* column = Column(first_, x);
    const size_t window = kLanes * static_cast<size_t>(row_.side);
    int16_t* const counters = counters_ + kLanes * first_;
    LanesType segments[count];
    for (int s = 0; s < count; ++s) segments[s] = LanesType::Load(counters + kLanes * s);
    for (; x < end; ++x, column += kLanes * step) {
      read(x, segments);
#pragma GCC unroll 16
      for (int s = 0; s < count; ++s) {
        const uint8_t* const leaving = column + static_cast<size_t>(s) * SegmentPitch(kLanes);
        segments[s] = segments[s] + ChangeOf<LanesType, tall, step>(leaving + window, leaving);
        if (lookUps) segments[s].Store(counters + kLanes * s);
      }
    }
    if (!lookUps)
      for (int s = 0; s < count; ++s) segments[s].Store(counters + kLanes * s);
  }

  template <class Read>
  LANES_INLINE_METHOD void WalkTallColumns(int x, int end, const Read& read) {
    const size_t window = kLanes * static_cast<size_t>(row_.side);
    const StoredSegments<LanesType> segments = {counters_ + kLanes * first_, last_ - first_ + 1};
    for (; x < end; ++x) {
      read(x, segments);
      for (int s = 0; s < segments.count; ++s) {
        const uint8_t* const leaving = Column(first_ + s, x);
        (segments[s] + ChangeOf<LanesType, tall, step>(leaving + window, leaving))
            .Store(counters_ + kLanes * (first_ + s));
      }
    }
  }

  const HistogramRow& row_;
  int first_ = 0, last_ = -1;  // the tracked segments
  alignas(64) int16_t counters_[256 + kLanes];
};

template <bool tall, int step = 1>
class CoarseLevel {
 public:
  LANES_INLINE_METHOD explicit CoarseLevel(const HistogramRow& row)
      : window_(kCoarseSegments * row.side),
        column_(row.columns.coarse),
        sums_(SumOfColumns<Lanes>(column_, row.side)) {
    below_[15] = static_cast<int16_t>(-kBias);
    sums_.Store(below_ + 16);
  }

  LANES_INLINE_METHOD void Step() {
    sums_ = sums_ + ChangeOf<Lanes, tall, step>(column_ + window_, column_);
    sums_.Store(below_ + 16);
    column_ += kCoarseSegments * step;
  }

  // How many samples lie below the segment 0..16, with the bias.
  LANES_INLINE_METHOD int Below(size_t segment) const { return below_[15 + segment]; }
  // The segment that holds the sample of a rank, which carries the bias.
  LANES_INLINE_METHOD size_t SegmentOfRank(int rank) const { return kCoarseSegments - CountAbove(sums_, rank); }

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
      : window_(kCoarseSegments * row.side),
        column_(row.columns.distances),
        low_(WideLanes::None()),
        high_(WideLanes::None()) {
    below_[7] = 0;
    for (int i = 0; i < row.side; ++i) MoveTall(Lowered(column_ + kCoarseSegments * i), Lanes::Every(-kBias));
  }

  LANES_INLINE_METHOD void Step() {
    for (int i = 0; i < step; ++i, column_ += kCoarseSegments) {
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
    return Lanes::Load(reinterpret_cast<const int16_t*>(column));
  }
  // Unsigned counters, lowered so that they can be widened as signed ones.
  LANES_INLINE_METHOD static Lanes Lowered(const uint16_t* column) { return Load(column) + Lanes::Every(-kBias); }
  LANES_INLINE_METHOD void MoveTall(Lanes entering, Lanes leaving) {
    Move(WidenLow(entering) - WidenLow(leaving), WidenHigh(entering) - WidenHigh(leaving));
  }
  LANES_INLINE_METHOD void Move(WideLanes lowChange, WideLanes highChange) {
    low_ = low_ + lowChange, high_ = high_ + highChange;
    low_.Store(below_ + 8), high_.Store(below_ + 16);
  }

  const ptrdiff_t window_;
  const uint16_t* column_;
  WideLanes low_, high_;
  alignas(64) int32_t below_[24];  // from index 7 on
};

}  // namespace quentara::KERNEL_TARGET
