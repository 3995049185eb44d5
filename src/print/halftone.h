/// Turning a picture into a screen of dots, as in print.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The thresholds of a screen cell: an ordered dither by a round spot.
///
/// A place (i, j) of the cell has the spot value 1 - (b * b + a * a), with a = (i / (cell - 1) - 0.5) * 2 and b the
/// same of j. In the order of these values, equal ones in row order, place number k gets trunc((k + 1) / (cell * cell +
/// 1) * 255 + 0.5); all in single precision. Corners are lowest, the centre is highest.
/// @param cell  >= 2.
/// @return cell x cell.
BytePlane ThresholdTile(int cell);

/// A plane as black dots that grow on white as it gets darker.
///
/// A sample becomes 0 where it is below the threshold of its place in the screen cell (see `ScreenGrid`), else 255. In
/// High quality this happens at twice the size and twice the cell, each pixel standing for 2 x 2, and `ResampleLuma`
/// brings the result back to the plane's size: the edges of the dots are grey.
/// @param angle    of the screen, degrees, 0..90.
/// @param cell     pixels, 2..32.
/// @param quality  kFast or kHigh.
BytePlane HalftoneScreen(const BytePlane& plane, float angle, int cell, int quality);

/// Screens each channel at its own angle with cells of dotSize + 2 pixels, and mixes the picture in by its
/// transparency.
/// @param settings  dotSize 1..30.
/// @param picture   "RGB".
ChannelSet HalftonePattern(const HalftoneSettings& settings, const ChannelSet& picture);

}  // namespace quentara
