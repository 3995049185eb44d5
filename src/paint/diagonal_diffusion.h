/// Smoothing by repeated means of diagonal neighbours.
#pragma once

#include "render/plane.h"

namespace quentara {

/// `rounds` rounds in single precision. In each, every sample but those of the first and last row becomes the mean of
/// the two above and below it; then every sample but those of the first and last column that of the two beside it; then
/// the first row takes the values of the second as they are by then, likewise the last row, and the first and last
/// column those of the columns next to them. A direction with a single row or column is left alone.
///
/// A round reaches one row. Runs in bands on the workers; the result does not depend on them.
/// @param rounds  >= 0.
/// @param plane   samples 0..255, of any size.
/// @return the samples after the last round, rounded half up.
BytePlane DiagonalDiffusion(int rounds, const BytePlane& plane);

}  // namespace quentara
