/// Medians of windows, weighed by how uniform the windows are.
#pragma once

#include "render/plane.h"

namespace quentara {

/// A median's weight is 1 / w with w = (deviation + 1 - the least deviation of the plane)^7.5, in single precision with
/// the power rounded from double: a window in a flat area outweighs one on an edge by orders of magnitude.
class WeighedMedians {
 public:
  /// @param reach       the distance of the points that are averaged, >= 0.
  /// @param medians     height x width, samples 0..255.
  /// @param deviations  same size: the mean deviation of each median's window, >= 0.
  WeighedMedians(int reach, const BytePlane& medians, const FloatPlane& deviations);

  /// Row y of the means, sum of median / w divided by sum of 1 / w, over four points, each clamped into the plane; a
  /// point that coincides with another counts twice. The terms are added in the order of the points given here.
  /// @param means  width samples, 0..255 up to rounding.
  void CornerMeans(int y, float* means) const;  ///< the rows y - reach and y + reach, in each x - reach and x + reach
  void AxialMeans(int y, float* means) const;   ///< (y, x - reach), (y, x + reach), (y - reach, x), (y + reach, x)

 private:
  int ClampRow(int y) const;

  int reach_;
  // Both with their first and last column repeated `reach` times, so that no column needs clamping.
  FloatPlane weights_;   // 1 / w
  FloatPlane weighted_;  // median / w
};

}  // namespace quentara
