/// The median of the window samples near a centre value.
///
/// result(y, x) = the lower median (rank (m - 1) / 2, counted from 0) of those m samples v of `values` in the window of
/// (y, x) for which |v - centre(y, x)| <= limit. The window is the square of side 2 * radius + 1 around (y, x), in the
/// line form the run of 2 * radius + 1 samples in its column or row; it is clipped to the plane, never padded.
///
/// What holds for both forms:
/// @param radius  in pixels, >= 0; 0 gives `values` back.
/// @param centre  height x width, samples 0..255, of any size.
/// @param values  same size and range; values(y, x) is within `limit` of centre(y, x), so no window is empty. This
///                holds in every pass that starts from values = centre while the limit does not fall.
/// @param limit   in sample values, >= 0; from 255 on the result is the plain lower median.
/// @return same size, samples 0..255.
///
/// They run on the calling thread. A result depends on rows up to `radius` away (in the horizontal form on its own row
/// only): banded_filters.h spreads them over the workers.
///
/// Method: with C(v) the number of window samples below v, the result has rank r = (C(centre - limit) +
/// C(centre + limit + 1) - 1) / 2 in the whole window. Small windows count their samples to bisect the value of that
/// rank, as Mogensen does for the plain median (Devillard 1998). Of larger ones column histograms in two levels, after
/// Perreault and Hebert (2007), give the counts and the value; the cost per pixel then does not grow with the radius.
#pragma once

#include "imageops/line_direction.h"
#include "render/plane.h"

namespace quentara {

BytePlane RangeMedianFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit);

BytePlane RangeMedianLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit,
                           LineDirection direction);

/// For some rows of the result.
void RangeMedianFilter2(int radius, const BytePlane& centre, const BytePlane& values, int limit, ByteRows result);
void RangeMedianLine2(int radius, const BytePlane& centre, const BytePlane& values, int limit, LineDirection direction,
                      ByteRows result);

}  // namespace quentara
