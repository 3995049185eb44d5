#include "imageops/banded_filters.h"

#include "imageops/box_mean_filter.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"
#include "render/bands.h"

namespace quentara {
namespace {

using PlaneFilter = void(int radius, const BytePlane& plane, ByteRows rows);

BytePlane RunFilter(PlaneFilter* filter, int radius, const BytePlane& plane) {
  return FilterRowsInBands<unsigned char>(
      radius, [&](ByteRows rows, const BytePlane& band) { filter(radius, band, rows); }, plane);
}

using SquareFilter = void(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows rows);
using LineFilter = void(int radius, const BytePlane& centre, const BytePlane& values, int limit,
                        LineDirection direction, ByteRows rows);

BytePlane RunPass(const RangePass& pass, SquareFilter* squareFilter, LineFilter* lineFilter, const BytePlane& centre,
                  const BytePlane& values) {
  const LineDirection direction = pass.index % 2 == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
  const auto filter = [&](ByteRows rows, const BytePlane& c, const BytePlane& v) {
    if (pass.square)
      squareFilter(pass.radius, c, v, pass.limit, rows);
    else
      lineFilter(pass.radius, c, v, pass.limit, direction, rows);
  };
  const bool staysInRow = !pass.square && direction == LineDirection::Horizontal;
  return FilterRowsInBands<unsigned char>(Bands{pass.bandCount, staysInRow ? 0 : pass.radius}, filter, centre, values);
}

}  // namespace

BytePlane MedianInBands(int radius, const BytePlane& plane) {
  return RunFilter(MedianFilter, radius, plane);
}

FloatPlane MedianDeviationInBands(int radius, const BytePlane& values, const BytePlane& medians) {
  return FilterRowsInBands<float>(
      radius,
      [&](FloatRows rows, const BytePlane& v, const BytePlane& m) { MedianDeviationFilter(radius, v, m, rows); },
      values, medians);
}

BytePlane MaxInBands(int radius, const BytePlane& plane) {
  return RunFilter(MaxFilter, radius, plane);
}

BytePlane MinInBands(int radius, const BytePlane& plane) {
  return RunFilter(MinFilter, radius, plane);
}

BytePlane BoxMeanInBands(int radius, const BytePlane& plane) {
  return RunFilter(BoxMeanFilter, radius, plane);
}

BytePlane ModeInBands(int radius, const BytePlane& plane) {
  return RunFilter(ModeFilter, radius, plane);
}

BytePlane RangeModeInBands(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  return FilterRowsInBands<unsigned char>(
      radius,
      [&](ByteRows rows, const BytePlane& c, const BytePlane& v) { RangeModeFilter2(radius, c, v, limit, rows); },
      centre, values);
}

BytePlane RangeMeanPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values) {
  return RunPass(pass, RangeMeanFilter2, RangeMeanLine2, centre, values);
}

BytePlane RangeMedianPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values) {
  return RunPass(pass, RangeMedianFilter2, RangeMedianLine2, centre, values);
}

}  // namespace quentara
