// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
//
// Sorting networks on bytes side by side, after Adams, "Fast median filters using separable sorting networks" (2021).
// A lane holds a tile of 2 x 2 pixels: their windows share all samples but one column on the left or right and one row
// above or below. Sorted columns are merged to pairs of columns, pairs to wider and wider runs, and all tiles whose
// windows hold a run take it from memory. Of each run only those samples are kept that can still be the median.
// A comparison whose result nobody takes is left out by the compiler, as everything but the loops over lanes unrolls.
#include "imageops/byte_lanes.h"
#include "imageops/sorted_bytes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

template <int n>
BYTE_LANES_INLINE Sorted<n> SortedColumn(const uint8_t* const* rows, int x) {
  if constexpr (n == 1) {
    return {{LoadBytes(rows[0] + x)}};
  } else {
    constexpr int kFirst = n > 8 ? 8 : n > 4 ? 4 : n > 2 ? 2 : 1;
    return Merged(SortedColumn<kFirst>(rows, x), SortedColumn<n - kFirst>(rows + kFirst, x));
  }
}

/// Tiles that go through all steps before the next ones do, so that their lists stay in the nearest cache.
constexpr int Block(int radius) {
  const int vectors = 640 / (kByteLanes * radius);
  return (vectors > 2 ? vectors : 2) * kByteLanes;
}

/// Sorted lists of a block of tiles and of the lanes before it. Lane x is the one x lanes behind the block's first.
/// Before the first block there are none: nothing of them reaches a pixel of the plane.
template <int n, int block>
class Lists {
 public:
  BYTE_LANES_INLINE_METHOD Sorted<n> At(int x) const {
    Sorted<n> list;
    BYTE_LANES_UNROLL
    for (int i = 0; i < n; ++i) list.at[i] = LoadBytes(samples_[i] + kByteLanes + x);
    return list;
  }
  BYTE_LANES_INLINE_METHOD void Store(const Sorted<n>& list, int x) {
    BYTE_LANES_UNROLL
    for (int i = 0; i < n; ++i) StoreBytes(list.at[i], samples_[i] + kByteLanes + x);
  }
  void Shift() {
    for (int i = 0; i < n; ++i) StoreBytes(LoadBytes(samples_[i] + block), samples_[i]);
  }

 private:
  alignas(kByteLanes) uint8_t samples_[n][kByteLanes + block];
};

/// How many of so many samples of a window can be its median.
constexpr int Kept(int radius, int samples) {
  const int others = (2 * radius + 1) * (2 * radius + 1) - samples;
  return samples < others + 1 ? samples : others + 1;
}

/// Sorted columns: the even and the odd ones.
template <int radius, int rows, bool stored = (rows > 2)>
class Columns {
 public:
  void Step(const uint8_t* const* even, const uint8_t* const* odd, int width) {
    for (int x = 0; x < width; x += kByteLanes) even_.Store(SortedColumn<rows>(even, x), x);
    for (int x = 0; x < width; x += kByteLanes) odd_.Store(SortedColumn<rows>(odd, x), x);
  }
  void Shift() { even_.Shift(), odd_.Shift(); }

  BYTE_LANES_INLINE_METHOD Sorted<rows> Even(int x) const { return even_.At(x); }
  BYTE_LANES_INLINE_METHOD Sorted<rows> Odd(int x) const { return odd_.At(x); }

 private:
  Lists<rows, Block(radius)> even_, odd_;
};

/// Columns of one or two samples are sorted wherever they are used.
template <int radius, int rows>
class Columns<radius, rows, false> {
 public:
  void Step(const uint8_t* const* even, const uint8_t* const* odd, int) { even_ = even, odd_ = odd; }
  void Shift() {}

  BYTE_LANES_INLINE_METHOD Sorted<rows> Even(int x) const { return SortedColumn<rows>(even_, x); }
  BYTE_LANES_INLINE_METHOD Sorted<rows> Odd(int x) const { return SortedColumn<rows>(odd_, x); }

 private:
  const uint8_t *const *even_, *const *odd_;  // of the present step
};

/// Runs of 2 * pairs columns of so many rows, sorted. Lane x has the run that ends with pair x.
template <int radius, int rows, int pairs>
class Runs {
 public:
  void Step(const uint8_t* const* even, const uint8_t* const* odd, int width) {
    parts_.Step(even, odd, width);
    if constexpr (kFirst > 1)
      for (int x = 0; x < width; x += kByteLanes) first_.Store(parts_.At(x), x);
  }
  void Shift() {
    parts_.Shift();
    if constexpr (kFirst > 1) first_.Shift();
  }

  BYTE_LANES_INLINE_METHOD auto At(int x) const {
    return Middle<Kept(radius, 2 * pairs * rows)>(Merged(Stored<kFirst>(x - kRest), Stored<kRest>(x)));
  }
  BYTE_LANES_INLINE_METHOD const Columns<radius, rows>& columns() const { return parts_.columns(); }

  template <int n>
  BYTE_LANES_INLINE_METHOD auto Stored(int x) const {
    if constexpr (n == kFirst && n > 1)
      return first_.At(x);
    else
      return parts_.template Stored<n>(x);
  }

 private:
  static constexpr int kFirst = pairs % 2 == 0 ? pairs / 2 : pairs - 1, kRest = pairs - kFirst;

  Runs<radius, rows, kFirst> parts_;
  Lists<Kept(radius, 2 * kFirst * rows), Block(radius)> first_;
};

/// Pair x is an odd column and the even one behind it, number x of the even ones.
template <int radius, int rows>
class Runs<radius, rows, 1> {
 public:
  void Step(const uint8_t* const* even, const uint8_t* const* odd, int width) {
    columns_.Step(even, odd, width);
    if constexpr (radius > 1)
      for (int x = 0; x < width; x += kByteLanes) pairs_.Store(At(x), x);
  }
  void Shift() {
    columns_.Shift();
    if constexpr (radius > 1) pairs_.Shift();
  }

  BYTE_LANES_INLINE_METHOD Sorted<2 * rows> At(int x) const { return Merged(columns_.Odd(x - 1), columns_.Even(x)); }
  BYTE_LANES_INLINE_METHOD const Columns<radius, rows>& columns() const { return columns_; }
  template <int n>
  BYTE_LANES_INLINE_METHOD Sorted<2 * rows> Stored(int x) const {
    static_assert(n == 1);
    return pairs_.At(x);
  }

 private:
  Columns<radius, rows> columns_;
  Lists<2 * rows, Block(radius)> pairs_;
};

template <int radius>
class Tiles {
 public:
  // Lane x: the tile whose windows end with the even column of pair x and the odd one behind it.
  void Step(const TileRow& row, int start, int width) {
    const uint8_t *even[kRows], *odd[kRows];
    for (int i = 0; i < kRows; ++i) even[i] = row.even[i] + start, odd[i] = row.odd[i] + start;
    shared_.Step(even + 1, odd + 1, width);
    upper_.Step(even, odd, width);
    lower_.Step(even + kRows - 1, odd + kRows - 1, width);
    for (int x = 0; x < width; x += kByteLanes) {
      const auto shared = shared_.At(x);
      const Sorted<kWide> left = Middle<kWide>(Merged(shared, shared_.columns().Even(x - radius)));
      const Sorted<kWide> right = Middle<kWide>(Merged(shared, shared_.columns().Odd(x)));
      StoreMedians(left, right, upper_, x, row.upper, row.pixels, 2 * (start + x - radius));
      StoreMedians(left, right, lower_, x, row.lower, row.pixels, 2 * (start + x - radius));
    }
    shared_.Shift(), upper_.Shift(), lower_.Shift();
  }

 private:
  static constexpr int kRows = 2 * radius + 2, kWide = Kept(radius, 2 * radius * (2 * radius + 1));
  using Line = Runs<radius, 1, radius>;

  BYTE_LANES_INLINE_METHOD static void StoreMedians(const Sorted<kWide>& left, const Sorted<kWide>& right,
                                                    const Line& line, int x, uint8_t* row, int pixels, int first) {
    const Sorted<2 * radius> shared = line.At(x);
    const Bytes even = MedianOf(left, Merged(shared, line.columns().Even(x - radius)));
    const Bytes odd = MedianOf(right, Merged(shared, line.columns().Odd(x)));
    if (first >= 0 && first + 2 * kByteLanes <= pixels) {
      StoreInterleaved(even, odd, row + first);
    } else {
      uint8_t medians[2 * kByteLanes];
      StoreInterleaved(even, odd, medians);
      for (int i = first < 0 ? -first : 0; i < 2 * kByteLanes && first + i < pixels; ++i) row[first + i] = medians[i];
    }
  }

  Runs<radius, 2 * radius, radius> shared_;
  Line upper_, lower_;
};

template <int radius>
void MedianOfTiles(const TileRow& row) {
  constexpr int kBlock = Block(radius);
  Tiles<radius> tiles;
  for (int x = 0; x < row.width; x += kBlock) tiles.Step(row, x, row.width - x < kBlock ? row.width - x : kBlock);
}

// The first register of pixels behind x; the last one of a row may overlap the one before it.
BYTE_LANES_INLINE int NextRegister(int x, int width) {
  return x + 2 * kByteLanes <= width || x + kByteLanes == width ? x + kByteLanes : width - kByteLanes;
}

/// The sorted columns of a row of pixels: the lowest, the middle and the highest samples of three.
struct SortedColumns {
  uint8_t* samples[3];

  BYTE_LANES_INLINE_METHOD void Store(const Sorted<3>& columns, int x) const {
    for (int i = 0; i < 3; ++i) StoreBytes(columns.at[i], samples[i] + x);
  }
  // One black and two whites beyond either edge.
  BYTE_LANES_INLINE_METHOD void StorePadding(int width) const {
    for (int i = 0; i < 3; ++i) samples[i][-1] = samples[i][width] = i == 0 ? 0 : 255;
  }
  // The median of a window is that of the largest of its lowest, the median of its middle and the smallest of its
  // highest samples.
  BYTE_LANES_INLINE_METHOD Bytes MediansAt(int x) const {
    const Bytes lowest =
        Larger(Larger(LoadBytes(samples[0] + x - 1), LoadBytes(samples[0] + x + 1)), LoadBytes(samples[0] + x));
    const Bytes middle =
        Middle<1>(Merged(Merged(Sorted<1>{LoadBytes(samples[1] + x - 1)}, Sorted<1>{LoadBytes(samples[1] + x + 1)}),
                         Sorted<1>{LoadBytes(samples[1] + x)}))
            .at[0];
    const Bytes highest =
        Smaller(Smaller(LoadBytes(samples[2] + x - 1), LoadBytes(samples[2] + x + 1)), LoadBytes(samples[2] + x));
    return MedianOf(Merged(Sorted<1>{lowest}, Sorted<1>{highest}), Sorted<1>{middle});
  }
};

void MedianOfNines(const NineRow& row) {
  const uint8_t* const rows[] = {row.rows[0], row.rows[1], row.rows[2], row.rows[3]};
  const ptrdiff_t pitch = row.pitch;
  uint8_t *const columns = row.columns, *const upperOut = row.upper, *const lowerOut = row.lower;
  const SortedColumns upper = {{columns, columns + pitch, columns + 2 * pitch}};
  const SortedColumns lower = {{columns + 3 * pitch, columns + 4 * pitch, columns + 5 * pitch}};
  const int width = row.width;
  for (int x = 0; x < width; x = NextRegister(x, width)) {
    const auto load = [&](int i) { return Sorted<1>{{LoadBytes(rows[i] + x)}}; };
    const Sorted<2> shared = Merged(load(1), load(2));
    upper.Store(Merged(shared, load(0)), x);
    lower.Store(Merged(shared, load(3)), x);
  }
  upper.StorePadding(width), lower.StorePadding(width);
  for (int x = 0; x < width; x = NextRegister(x, width)) {
    StoreBytes(upper.MediansAt(x), upperOut + x);
    StoreBytes(lower.MediansAt(x), lowerOut + x);
  }
}

void SplitColumns(const uint8_t* samples, uint8_t* even, uint8_t* odd, int width) {
  constexpr int kPairs = 2 * kByteLanes;
  uint8_t last[kPairs] = {};
  for (int x = 0; x < width; x += kPairs) {
    const uint8_t* pairs = samples + x;
    if (x + kPairs > width) {
      for (int i = 0; x + i < width; ++i) last[i] = pairs[i];
      pairs = last;
    }
    Bytes evens, odds;
    LoadInterleaved(pairs, evens, odds);
    StoreBytes(evens, even + x / 2), StoreBytes(odds, odd + x / 2);
  }
}

}  // namespace

extern const MedianKernels kMedianKernels;
const MedianKernels kMedianKernels = {MedianOfNines,
                                      SplitColumns,
                                      {nullptr, MedianOfTiles<1>, MedianOfTiles<2>, MedianOfTiles<3>, MedianOfTiles<4>,
                                       MedianOfTiles<5>, MedianOfTiles<6>, MedianOfTiles<7>, MedianOfTiles<8>}};

}  // namespace quentara::KERNEL_TARGET
