/// The inner loops of the window filters and of the dearest steps from pixel to pixel, built once per instruction set
/// from the same sources. All sets give the same bytes. See `window_kernels_dispatch.h` for the choice.
#pragma once

// Included by sources that are built for one instruction set: declarations only, and no headers with inline functions.
#include <stddef.h>
#include <stdint.h>

namespace quentara {

/// What the counters of a column say.
enum class CountersKind { kEach, kBelow, kBelowWithDistances };

constexpr size_t kMostColumns = 1024;  ///< in a strip, windows that reach beyond it included
constexpr int kCoarseSegments = 16;    ///< of 16 values each

/// Bytes from one fine segment to the next. An odd number of cache lines: counters of one column in different segments
/// then compete for no set of the cache.
constexpr size_t SegmentPitch(int fineLanes) {
  return static_cast<size_t>(fineLanes) * kMostColumns + 64;
}

/// Histograms of neighbouring columns. The 256 values fall into fine segments of `fineLanes` values, an instruction
/// set's own number, behind which an empty one stands. Those below are as in `kBelow`; in `kEach` only `fine` is kept,
/// and it holds how often each value occurs. A column has at most 255 samples.
struct ColumnCounters {
  uint8_t* fine;  ///< fine[segment * SegmentPitch(fineLanes) + fineLanes * column + lane]: samples of the segment below
                  ///< its value `lane`
  uint8_t* coarse;      ///< coarse[16 * column + segment]: samples in the coarse segments 0 .. segment
  uint16_t* distances;  ///< distances[16 * column + segment]: the sum of end - v over the samples v < end, where end =
                        ///< 16 * (segment + 1); in `kBelowWithDistances` only
  size_t step;          ///< columns from one sample of a row to the next, and from one window: 1 or 2
};

constexpr int kMostPixels = 512;  ///< in a row of a strip

/// The windows of one row of pixels, each of at most 65535 samples.
struct HistogramRow {
  ColumnCounters columns;
  int side;          ///< the window of pixel x is columns step * x .. step * x + side - 1
  int width;         ///< pixels in the row; step * width + side columns are there to be read
  bool tallColumns;  ///< a column may have more than 127 samples
  int mostSamples;   ///< of a window
};

/// The upkeep of column histograms.
struct ColumnKernels {
  int fineLanes[3];  ///< by kind: values of a fine segment
  /// By kind: takes a row of samples into the counters of its columns and another one out; one may be nullptr.
  void (*moveRow[3])(const ColumnCounters& columns, const uint8_t* entering, const uint8_t* leaving, int count);
};

/// Where the read-outs `rank` and `deviation` are for a step of 2, of columns that are not tall.
constexpr int kDiagonalKernels = 2;

/// Read-outs of all windows of a row. Those of the values near the centre, centre[x] - limit .. centre[x] + limit with
/// limit <= 255, need one of them in each window.
struct HistogramKernels {
  /// out[x] = the value of rank ranks[x], counted from 0. Of counters `kBelow`.
  void (*rank)(const HistogramRow& row, const int* ranks, uint8_t* out);
  /// out[x] = the lower median of the values near the centre. Of counters `kBelow`.
  void (*rangeMedian)(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out);
  /// out[x] = the mean of the values near the centre. Of counters `kEach`.
  void (*rangeMean)(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out);
  /// out[x] = the mean of |v - medians[x]| over the values v. Of counters `kBelowWithDistances`.
  void (*deviation)(const HistogramRow& row, const uint8_t* medians, float* out);
  /// out[x] = the most frequent of the values, of equally frequent ones the lowest; all lie in lowest[x] .. highest[x].
  /// Of counters `kEach`.
  void (*mode)(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out);
  /// The same of the values near the centre.
  void (*rangeMode)(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out);
};

/// The windows of one row of pixels in a padded plane: those of pixel x have the corner samples + x.
struct WindowRow {
  const uint8_t* samples;  ///< kMostByteLanes more than the windows need can be read from each row
  ptrdiff_t stride;        ///< bytes from one row to the next
  int rows;                ///< of the window, those outside the plane left out
  int side;                ///< columns of the window, those outside the plane hold padding
  int width;               ///< pixels in the row
};

constexpr int kMostByteLanes = 64;  ///< pixels that a kernel takes at a time

/// Sums over small windows, sample by sample for many pixels at a time.
struct DirectKernels {
  /// out[x] = the mean of the values within limit of centre[x], after Lee (1983). limit <= 127, at most 255 rows and
  /// columns, and (2 * limit + 1) times the samples of a window <= 65535. The padding is 0; outside[x], up to a
  /// multiple of kMostByteLanes, is how many columns of it a window has.
  void (*rangeMean)(const WindowRow& row, const uint8_t* centre, int limit, const uint16_t* outside, uint8_t* out);
};

constexpr int kBisectedPixels = 64;   ///< that a kernel takes at a time
constexpr int kBisectionBias = 0x80;  ///< makes the order of signed bytes out of that of unsigned ones, by exclusive or

/// Medians over small windows, by bisection of the value.
struct RangeMedianKernels {
  /// out[x] = the lower median of the values within limit of centre[x]; 2^steps > min(2 * limit, 255), limit <= 255.
  /// The samples carry kBisectionBias, and the padding is 255 with it. A window has at most 255 samples, padding
  /// included, and sizes[x] without; at least one is within the limit. The width is kBisectedPixels or more.
  void (*byBisection)(const WindowRow& row, const uint8_t* centre, int limit, int steps, const uint8_t* sizes,
                      uint8_t* out);
};

/// The rows behind two rows of pixels, in tiles of 2 x 2 pixels. Tile t is pixels 2 t and 2 t + 1 of either row, and
/// its windows take columns 2 t .. 2 t + 2 radius + 1 of the rows, which are padded on both sides.
struct TileRow {
  const uint8_t* const* even;  ///< columns 0, 2 ... of 2 radius + 2 rows, readable from -radius to a multiple of 32
  const uint8_t* const* odd;   ///< columns 1, 3 ...
  int width;                   ///< tiles and radius more
  uint8_t* upper;              ///< the two rows of medians
  uint8_t* lower;
  int pixels;  ///< in either of them
};

/// A line of the windows of one row of pixels: of pixel x it takes samples[x] .. samples[x + side - 1].
/// kMostByteLanes + 8 more than the windows need can be read.
struct WindowLine {
  const uint8_t* samples;
  int side;
};
struct WindowLines {
  const WindowLine* lines;
  int count;
  int width;  ///< pixels
};

/// Mean distances, eight bytes at a time.
struct DistanceKernels {
  /// out[x] = the mean of |v - medians[x]| over the values v of the window of pixel x, sizes[x] of them; what its lines
  /// have besides is padding of 0. At most 65535 samples.
  void (*deviation)(const WindowLines& windows, const uint8_t* medians, const float* sizes, float* out);
};

/// Samples of the windows of one row of pixels, in fours: those of pixel x begin at first + 4 * x, the next four of its
/// window lie `step` behind them. Of each four only the first `counted` belong to the window. Padding is 255.
struct QuadLine {
  const uint8_t* first;
  int count, step, counted;
};
struct QuadRow {
  const QuadLine* lines;
  int lineCount;
  int rows, side;  ///< of the windows
  int width;       ///< pixels, kMostByteLanes or more
};

/// Mean distances from a square or a line by instructions that add up four bytes at a time.
struct QuadKernels {
  /// quads[4 * x + i] = rows[i][x], kMostByteLanes or more of each.
  void (*interleave)(const uint8_t* const* rows, uint8_t* quads, int width);
  /// Takes a row of samples into sums of columns and another one out.
  void (*moveColumns)(const uint8_t* entering, const uint8_t* leaving, uint16_t* columns, int width);
  /// out[x] = the mean of |v - medians[x]| over the values v, sizes[x] of them in at most 257 rows. columns[x] ..
  /// columns[x + side - 1] are the sums of the window's columns, 0 in the padding, up to kMostByteLanes behind the
  /// last.
  void (*deviation)(const QuadRow& row, const uint8_t* medians, const uint16_t* columns, const float* sizes,
                    float* out);
};

/// The four rows behind two rows of pixels and their windows of 3 x 3.
struct NineRow {
  const uint8_t* const* rows;
  uint8_t* columns;  ///< room for six rows, each with a sample on either side
  ptrdiff_t pitch;   ///< from one of these rows to the next
  uint8_t* upper;    ///< the two rows of medians
  uint8_t* lower;
  int width;  ///< kMostByteLanes or more
};

constexpr int kMostNetworkRadius = 8;

/// Medians by sorting networks.
struct MedianKernels {
  /// Beside the rows lie one black and two whites.
  void (*medianOfNines)(const NineRow& row);
  /// even[i] = samples[2 i], odd[i] = samples[2 i + 1], to be written up to a multiple of 32.
  void (*splitColumns)(const uint8_t* samples, uint8_t* even, uint8_t* odd, int width);
  /// By radius, from 1.
  void (*medianOfTiles[kMostNetworkRadius + 1])(const TileRow& row);
};

/// The largest, or the smallest, of samples.
struct ExtremeKernels {
  /// extremes[x] = that of a[x] and b[x].
  void (*ofPairs)(const uint8_t* a, const uint8_t* b, uint8_t* extremes, int width);
  /// extremes[x] = that of samples[x] and extremes[x].
  void (*include)(const uint8_t* samples, uint8_t* extremes, int width);
  /// extremes[x] = that of samples[x] .. samples[x + side - 1]. `spare` is as long; both are overwritten.
  void (*ofWindows)(int side, uint8_t* samples, uint8_t* spare, uint8_t* extremes, int width);
};

struct BoxKernels {
  /// columns[x] += entering[x] - leaving[x].
  void (*slideColumns)(const uint8_t* entering, const uint8_t* leaving, int* columns, int width);
  /// means[x] = the sum of columns[x - reach] .. columns[x + reach], divided by counts[x] and rounded half up. columns
  /// is 0 from -reach - 1 to -1, counts is above 0, and both are there up to a multiple of 32 behind the last to be
  /// used.
  void (*meansOfColumns)(const int* columns, int reach, const float* counts, uint8_t* means, int width);
};

/// The diamonds of one row of pixels. Of row i pixel x takes columns x + |i - radius| .. x + 2 * radius - |i - radius|.
struct DiamondRow {
  const uint8_t* const* rows;  ///< 2 * radius + 1 of them
  int radius;
  int width;  ///< pixels, kMostByteLanes or more
};

constexpr int kMostNetworkDiamond = 7;

/// Small diamonds, sample by sample for many pixels at a time.
struct DiamondKernels {
  /// By radius, from 1: out[x] = the median of the diamond.
  void (*median[kMostNetworkDiamond + 1])(const DiamondRow& row, uint8_t* out);
};

/// A plane that lies with its first sample at (top, left) of a rotation's canvas.
struct SampledPlane {
  const uint8_t* samples;
  int stride, top, left;
};

constexpr int kMostSampled = 256;  ///< pixels of a run

struct RotationKernels {
  /// result[i] = the plane at (columnX[i] + rowX, columnY[i] + rowY), interpolated between the centres of four of its
  /// samples and cut to a whole number. All four lie in the plane; count is at most kMostSampled.
  void (*sample)(const SampledPlane& plane, const float* columnX, const float* columnY, float rowX, float rowY,
                 int count, uint8_t* result);
};

/// The three channels of a run of pixels.
struct RgbRun {
  const uint8_t* red;
  const uint8_t* green;
  const uint8_t* blue;
};

/// Where the pixels of a row fall in the cells of a screen: fractions of a cell, in 2^-32, that wrap with it.
struct ScreenRow {
  uint32_t firstU, stepU;  ///< of pixel 0 and from one pixel to the next, across the cell
  uint32_t firstV, stepV;  ///< and down the cell
  uint32_t cell;           ///< pixels, 1..64
  uint32_t edge;           ///< how near to the next pixel of the cell a place is not sure, in 2^-32 pixels
};

/// From pixel to pixel, for `count` of them; what comes out overlaps nothing that goes in.
struct PixelKernels {
  /// luma[i] = trunc(red * R + green * G + blue * B + 0.5), with weights[0], [1] and [2] for the three.
  void (*luma)(const float* weights, const RgbRun& in, uint8_t* luma, ptrdiff_t count);
  /// mapped[i] = map[samples[i]]; in place, too.
  void (*mapBytes)(const uint8_t* map, const uint8_t* samples, uint8_t* mapped, ptrdiff_t count);
  /// marks[i] = 1 for a pixel of the colour of skin, as skin_tones.h defines it, else 0.
  void (*markSkin)(const RgbRun& in, uint8_t* marks, ptrdiff_t count);
  /// As hsv.h defines both ways.
  void (*toHsv)(const uint8_t* red, const uint8_t* green, const uint8_t* blue, float* hue, float* saturation,
                float* value, ptrdiff_t count);
  void (*fromHsv)(const float* hue, const float* saturation, const float* value, uint8_t* red, uint8_t* green,
                  uint8_t* blue, ptrdiff_t count);
  /// places[i] = row of the cell * cell + column, of pixel first + i; unsure[i] = whether one of them is not sure.
  /// Whether there is any.
  bool (*screenPlaces)(const ScreenRow& row, int first, uint16_t* places, uint32_t* unsure, int count);
};

struct WindowKernels {
  const char* name;
  const ColumnKernels& columns;
  const HistogramKernels* histogram;  ///< [HistogramRow::tallColumns], and [kDiagonalKernels] for a step of 2
  const DirectKernels& direct;
  const DistanceKernels& distance;
  const QuadKernels* quads;  ///< nullptr where there are no such instructions
  const RangeMedianKernels& rangeMedian;
  const MedianKernels& median;
  const ExtremeKernels& largest;
  const ExtremeKernels& smallest;
  const BoxKernels& box;
  const DiamondKernels& diamond;
  const RotationKernels& rotation;
  const PixelKernels& pixel;
};

}  // namespace quentara
