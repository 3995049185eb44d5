/// Small windows summed or counted sample by sample, for all pixels of a row at a time: no histogram, no branch on the
/// data.
#pragma once

#include "imageops/window_reach.h"
#include "render/plane.h"

namespace quentara {

/// The plane with `columns` samples of padding before each row and as many and kMostByteLanes + 8 more behind it.
BytePlane PadRows(const BytePlane& plane, int columns, unsigned char padding = 0);

/// result = the range mean, as range_mean_filter.h defines it, of windows and limits that `PrefersDirectMean` accepts.
void RangeMeanFromDirectSums(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                             ByteRows result);

/// result = the range median, as range_median_filter.h defines it, of windows, limits and planes that
/// `PrefersBisection` accepts.
void RangeMedianByBisection(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                            ByteRows result);

/// result = the mean distance, as median_filter.h defines it, of windows that `PrefersDirectDeviation` accepts.
void DeviationFromDirectSums(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatRows result);

/// The same of windows and planes that `PrefersQuads` accepts.
void DeviationFromQuads(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatRows result);

}  // namespace quentara
