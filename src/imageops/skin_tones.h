/// The pixels of a picture that have the colour of skin, and how bright they are.
#pragma once

#include <vector>

#include "render/plane.h"

namespace quentara {

/// Pixels of a picture, each as row * width + column, in scan order.
using PointList = std::vector<int>;

/// The pixels of skin-like colour, by a fixed test of each pixel's red, green and blue: a red of 100 to 255 that is
/// the largest channel, leads the middle one by 1 to 100 and is below 2.25 times it, not too close to grey, and with a
/// hue on the orange side, or a little on the pink one.
/// @param red, green, blue  of one size.
PointList SkinPointList(const BytePlane& red, const BytePlane& green, const BytePlane& blue);

/// The brightness of a subject.
struct Tones {
  float median;
  float spread;  ///< mean distance from the median
};

/// The lower median of the samples of `plane` at `points`, and the mean over the list of their distances from it,
/// summed in the order of the list in single precision.
///
/// Without points the whole plane stands for the subject: the median is then its mean, rounded half up, and the spread
/// the mean distance from that; but a plane with a median below 100 gives {100, 0}.
/// @param plane  not empty.
Tones ToneLevels(const PointList& points, const BytePlane& plane);

/// The median alone.
float MedianTone(const PointList& points, const BytePlane& plane);

}  // namespace quentara
