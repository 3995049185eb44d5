/// The strip engine of the histogram filters for diamond windows.
///
/// Seen along the diagonals of the plane a diamond is a square: of diagonals d - radius .. d + radius it takes what
/// lies in columns u - radius .. u + radius, where pixel (y, x) is in diagonal y - x and column y + x. Only every
/// second place of that frame has a sample. So a step along a diagonal crosses two columns, and a step to the next
/// diagonal changes one half of the columns.
#pragma once

#include "imageops/column_counters.h"
#include "imageops/diagonals.h"
#include "imageops/window_kernels.h"

namespace quentara {

class DiagonalHistograms {
 public:
  static constexpr int kStrip = 512;  ///< columns: their counters stay in the second-level cache

  /// @param radius  0 .. 126, or up to 180 where no diagonal has more than 127 samples.
  /// @param values  a plane's samples by their diagonals; both outlive the object.
  DiagonalHistograms(int radius, const Diagonals& diagonals, const unsigned char* values, CountersKind kind);

  /// Turns to the strip whose windows have their centres in columns u .. u + kStrip - 1, before its first diagonal.
  void StartStrip(int u);
  /// Moves from the windows of diagonal d - 1 to those of d.
  void StepTo(int d);

  /// The pixels of diagonal d in the strip: from column x of the plane on.
  HistogramRow PixelsOf(int d, int& x) const;

 private:
  struct Columns {
    int first, end;
  };
  // The columns x of the plane in which diagonal d crosses columns from .. end - 1.
  Columns Crossing(int d, int from, int end) const;
  // The place of a column in the counters.
  int PlaceOf(int column) const { return column - (u_ - radius_); }
  void Move(int d, bool enters);

  const int radius_;
  const Diagonals& diagonals_;
  const unsigned char* const values_;
  ColumnCounterMemory counters_;
  int u_ = 0;
};

/// Calls readOut(d, x, row) for the pixels (x + d, x), (x + d + 1, x + 1) ... of all diagonals of all strips.
template <class ReadOut>
void ForDiagonalRows(int radius, const Diagonals& diagonals, const unsigned char* values, CountersKind kind,
                     const ReadOut& readOut) {
  DiagonalHistograms histograms(radius, diagonals, values, kind);
  for (int u = 0; u < diagonals.end() - diagonals.first(); u += DiagonalHistograms::kStrip) {
    histograms.StartStrip(u);
    for (int d = diagonals.first(); d < diagonals.end(); ++d) {
      histograms.StepTo(d);
      int x = 0;
      const HistogramRow row = histograms.PixelsOf(d, x);
      if (row.width > 0) readOut(d, x, row);
    }
  }
}

}  // namespace quentara
