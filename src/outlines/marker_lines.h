/// Lines along the borders of flat regions, thinned and grown again to an even width.
#pragma once

#include "render/plane.h"

namespace quentara {

/// Finds the pixels of `plane` that differ from one of their eight neighbours by `minimumDifference` or more, thins
/// them to lines one pixel wide, eats back their open ends and thickens what is left.
///
/// The thinning passes look at the line pixels alone; the thickening runs in bands on the workers and may differ by a
/// pixel near a cut between two bands.
/// @param thickness          >= 1; each step above 1 adds about a pixel of width.
/// @param minimumDifference  in sample values, >= 1.
/// @param plane              samples 0..255, of any size.
/// @return same size: 0 on a line, 255 elsewhere.
BytePlane MarkerLines(int thickness, int minimumDifference, const BytePlane& plane);

}  // namespace quentara
