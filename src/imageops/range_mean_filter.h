/// The mean of the window samples near a centre value: the sigma filter of Lee (1983).
///
/// result(y, x) = s / m + 0.5, truncated, in single precision, where s is the sum and m the number of those samples v
/// of `values` in the window of (y, x) for which |v - centre(y, x)| <= limit. The window is the square of side 2 *
/// radius + 1 around (y, x), in the line forms the run of 2 * radius + 1 samples in its column or row; it is clipped to
/// the plane, never padded. The one-plane forms take the plane for both roles.
///
/// Passes of a filter keep `centre` at the unfiltered plane and replace `values` by the last result: the range stays
/// anchored while the values drift.
///
/// What holds for all four forms:
/// @param radius  in pixels, >= 0; 0 gives `values` back.
/// @param centre  height x width, samples 0..255, of any size.
/// @param values  same size and range; values(y, x) is within `limit` of centre(y, x), so no window is empty. This
///                holds in every pass that starts from values = centre while the limit does not fall.
/// @param limit   in sample values, >= 0; 0 on one plane gives the plane back, from 255 on the result is a box mean.
/// @return same size, samples 0..255.
///
/// They run on the calling thread. A result depends on rows up to `radius` away (in the horizontal form on its own row
/// only): banded_filters.h spreads them over the workers.
///
/// Method: small windows are summed directly, many pixels at a time; large ones are read from column histograms after
/// Perreault and Hebert (2007), so that the cost per pixel never grows with the window's area.
#pragma once

#include "imageops/line_direction.h"
#include "render/plane.h"

namespace quentara {

BytePlane RangeMeanFilter(int radius, const BytePlane& plane, int limit);
BytePlane RangeMeanFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit);

BytePlane RangeMeanLine(int radius, const BytePlane& plane, int limit, LineDirection direction);
BytePlane RangeMeanLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit,
                         LineDirection direction);

/// For some rows of the result.
void RangeMeanFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result);
void RangeMeanLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit, LineDirection direction,
                    ByteRows result);

}  // namespace quentara
