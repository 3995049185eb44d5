/// The strip engine of the histogram filters, after Perreault and Hebert, "Median filtering in constant time" (2007).
///
/// The plane is walked in vertical strips. Every column of a strip keeps a histogram of the rows that the window spans;
/// a step down adds the samples of one row and takes those of another away. Rows and columns outside the plane are
/// never added, so clipped windows need no case of their own.
#pragma once

#include <algorithm>

#include "imageops/column_counters.h"
#include "imageops/window_kernels.h"
#include "imageops/window_reach.h"
#include "render/plane.h"

namespace quentara {

/// Whether the counters can hold the windows of a plane: at most 255 samples in a column and 65535 in all.
bool FitsColumnHistograms(WindowReach reach, int height, int width);

class ColumnHistograms {
 public:
  static constexpr int kStrip = kMostPixels;  ///< pixels: the counters of a strip stay in the second-level cache

  ColumnHistograms(WindowReach reach, const BytePlane& values, CountersKind kind);

  /// Turns to the strip whose first pixel is column x, with the windows of row y.
  void StartStrip(int y, int x, int width);
  /// Moves from the windows of row y - 1 to those of row y.
  void StepTo(int y);

  HistogramRow row() const { return row_; }

 private:
  void Move(int entering, int leaving);

  const WindowReach reach_;
  const BytePlane& values_;
  ColumnCounterMemory counters_;
  HistogramRow row_ = {};
  int firstColumn_ = 0, columnCount_ = 0;  // inside the plane
  int padding_ = 0;                        // columns of the strip that are not
};

/// Asks for `count` samples of a row that is `kRowsAhead` below: strips of a large plane jump from page to page, where
/// the processor expects nothing.
constexpr int kRowsAhead = 3;
void Prefetch(const BytePlane& plane, int y, int x, int count);

/// Calls readOut(y, x, row) for each row of each strip of `result`: the row's first pixel is (y, x). The windows fit.
template <class T, class ReadOut>
void ForStripRows(WindowReach reach, const BytePlane& values, CountersKind kind, ResultRows<T> result,
                  const ReadOut& readOut) {
  ColumnHistograms histograms(reach, values, kind);
  for (int x = 0; x < values.cols(); x += ColumnHistograms::kStrip) {
    histograms.StartStrip(result.first, x, std::min(ColumnHistograms::kStrip, values.cols() - x));
    for (int y = result.first; y < result.end(); ++y) {
      if (y > result.first) histograms.StepTo(y);
      readOut(y, x, histograms.row());
    }
  }
}

}  // namespace quentara
