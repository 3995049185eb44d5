/// Medians of windows, weighed by how uniform the windows are.
#pragma once

#include "imageops/float_memo.h"
#include "render/plane.h"

namespace quentara {

/// A median's weight is 1 / w with w = (deviation + 1 - the least deviation of the plane)^7.5, in single precision with
/// the power rounded from double: a window in a flat area outweighs one on an edge by orders of magnitude.
///
/// Walks down the rows from one of them on and keeps the weights of those within reach; not to be shared by threads.
class WeighedMedians {
 public:
  /// Planes of one size, which outlive the object.
  struct Planes {
    const BytePlane& medians;      ///< samples 0..255
    const FloatPlane& deviations;  ///< the mean deviation of each median's window, >= 0
    float leastDeviation;          ///< of all
  };

  /// @param reach     the distance of the points that are averaged, >= 0.
  /// @param firstRow  the first row to be asked for.
  WeighedMedians(int reach, const Planes& planes, int firstRow);

  /// Row y, not above the last one asked for, of the means: sum of median / w divided by sum of 1 / w, over four
  /// points, each clamped into the plane; a point that coincides with another counts twice. The terms are added in the
  /// order of the points given here.
  /// @param means  as many samples as a row has, 0..255 up to rounding.
  void CornerMeans(int y, float* means);  ///< the rows y - reach and y + reach, in each x - reach and x + reach
  void AxialMeans(int y, float* means);   ///< (y, x - reach), (y, x + reach), (y - reach, x), (y + reach, x)

 private:
  struct Power {
    float leastDeviation;
    float operator()(float deviation) const;
  };

  void WeighRows(int end);
  /// Where the terms of a row, clamped into the plane, start.
  std::ptrdiff_t Place(int y) const;

  const int reach_;
  const Planes planes_;
  FloatMemo<float, Power> power_;
  int nextRow_;
  // Rows in turn, both with their first and last column repeated `reach` times, so that no column needs clamping.
  FloatPlane weights_;   // 1 / w
  FloatPlane weighted_;  // median / w
};

}  // namespace quentara
