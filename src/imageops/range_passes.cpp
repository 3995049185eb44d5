#include "imageops/range_passes.h"

#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"
#include "render/bands.h"

namespace quentara {
namespace {

template <class SquareFilter, class LineFilter>
BytePlane RunPass(const RangePass& pass, const SquareFilter& squareFilter, const LineFilter& lineFilter,
                  const BytePlane& centre, const BytePlane& values) {
  if (pass.square) {
    const auto filter = [&](const BytePlane& c, const BytePlane& v) {
      return squareFilter(pass.radius, c, v, pass.limit);
    };
    return FilterInBands(Bands{pass.bandCount, pass.radius}, filter, centre, values);
  }
  const LineDirection direction = pass.index % 2 == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
  const auto filter = [&](const BytePlane& c, const BytePlane& v) {
    return lineFilter(pass.radius, c, v, pass.limit, direction);
  };
  // A horizontal line stays in its row.
  const int overlap = direction == LineDirection::Horizontal ? 0 : pass.radius;
  return FilterInBands(Bands{pass.bandCount, overlap}, filter, centre, values);
}

}  // namespace

BytePlane RangeMeanPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values) {
  return RunPass(pass, RangeMeanFilter2, RangeMeanLine2, centre, values);
}

BytePlane RangeMedianPass(const RangePass& pass, const BytePlane& centre, const BytePlane& values) {
  return RunPass(pass, RangeMedianFilter2, RangeMedianLine2, centre, values);
}

}  // namespace quentara
