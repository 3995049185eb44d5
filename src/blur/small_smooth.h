/// Small linear smoothers: repeated passes of a separable kernel of three taps.
///
/// One pass filters the rows between the first and the last along their columns, then the columns between the first and
/// the last along their rows, with the inner taps. Then, from what that left, the first and last row mix with the row
/// beside them, and the first and last column with the column beside them, with the edge taps; the corners take the
/// column's. A direction with two samples has edges only, one with a single sample is left alone.
///
/// |                            | inner taps    | edge taps (edge, neighbour) |
/// |----------------------------|---------------|-----------------------------|
/// | BinomialSmooth             | (1, 2, 1) / 4 | (2, 1) / 3                  |
/// | BoxSmooth3, BoxSmooth3Float| (1, 1, 1) / 3 | (1, 1) / 2                  |
///
/// All is computed in single precision, terms in the order of the samples; the byte forms round half up after the last
/// pass.
/// @param passes  >= 0; 0 gives the plane back.
/// @param plane   height x width, of any size; bytes, or finite floats.
/// @return same size; a constant plane stays constant.
///
/// They run on the calling thread. A pass reaches one row, so `FilterInBands` with `passes` as its radius spreads them
/// over the workers without changing a byte.
#pragma once

#include "render/plane.h"

namespace quentara {

BytePlane BinomialSmooth(int passes, const BytePlane& plane);
BytePlane BoxSmooth3(int passes, const BytePlane& plane);
FloatPlane BoxSmooth3Float(int passes, const FloatPlane& plane);

}  // namespace quentara
