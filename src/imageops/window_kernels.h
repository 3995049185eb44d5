/// The inner loops of the window filters, built once per instruction set from the same sources. All sets give the same
/// bytes. See `window_kernels_dispatch.h` for the choice.
#pragma once

// Included by sources that are built for one instruction set: declarations only, and no headers with inline functions.
#include <stddef.h>
#include <stdint.h>

namespace quentara {

/// The column histograms behind one row of a strip of pixels. The 256 values fall into 16 segments of 16.
struct HistogramRow {
  const uint8_t* fine;  ///< fine[segment * pitch + 16 * column + value % 16]: how often the value occurs in the column
  const uint8_t* coarse;  ///< coarse[16 * column + segment]: how many samples of the column fall into the segment
  size_t pitch;           ///< bytes from one segment to the next
  int side;               ///< the window of pixel x is columns x .. x + side - 1
  int width;              ///< pixels in the row; width + side columns are there to be read
  bool largeWindows;      ///< a window may hold more than 32767 samples
};

/// Read-outs of all windows of a row, each of at most 32767 samples; `rank`, `rangeMedian` and `mode` take up to 65534.
struct HistogramKernels {
  /// out[x] = the value of rank ranks[x], counted from 0.
  void (*rank)(const HistogramRow& row, const int* ranks, uint8_t* out);
  /// out[x] = the lower median of the values within limit of centre[x].
  void (*rangeMedian)(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out);
  /// out[x] = the mean of the values within limit of centre[x].
  void (*rangeMean)(const HistogramRow& row, const uint8_t* centre, int limit, uint8_t* out);
  /// out[x] = the sum of |v - medians[x]| over the values v.
  void (*deviation)(const HistogramRow& row, const uint8_t* medians, int* sums);
  /// out[x] = the most frequent of the values lowest[x] .. highest[x], of equally frequent ones the lowest; at least
  /// one of them occurs.
  void (*mode)(const HistogramRow& row, const uint8_t* lowest, const uint8_t* highest, uint8_t* out);
};

constexpr int kMostTaps = 8;  ///< taps that a direct kernel adds at a time

/// Sums over neighbouring samples, for all pixels of a row at a time. Arrays with an index [taps], 1 .. kMostTaps, take
/// values[x] .. values[x + taps - 1] for pixel x.
struct DirectKernels {
  /// The values within limit of centre[x]: the highest, at most 255, and how many there are. limit <= 127.
  void (*rangesOf)(const uint8_t* centre, int limit, uint8_t* highest, uint8_t* span, int width);
  /// Over the values v in highest[x] - span[x] + 1 .. highest[x]: adds v - (highest[x] - span[x]) to sums[x] and 1 to
  /// counts[x]. taps * span[x] <= 255.
  void (*addNear[kMostTaps + 1])(const uint8_t* values, const uint8_t* highest, const uint8_t* span, uint16_t* sums,
                                 uint16_t* counts, int width);
  /// out[x] = the mean of the values that `addNear` has added.
  void (*meanOfNear)(const uint16_t* sums, const uint16_t* counts, const uint8_t* highest, const uint8_t* span,
                     uint8_t* out, int width);
  /// Adds to counts[x] how many of the values are at most limits[x].
  void (*countNotAbove[kMostTaps + 1])(const uint8_t* values, const uint8_t* limits, uint8_t* counts, int width);
  /// Adds |v - medians[x]| over the values v to sums[x].
  void (*addDistances[kMostTaps + 1])(const uint8_t* values, const uint8_t* medians, int* sums, int width);
};

struct WindowKernels {
  const char* name;
  const HistogramKernels& histogram;
  const DirectKernels& direct;
};

}  // namespace quentara
