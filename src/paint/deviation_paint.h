/// The smoother behind Bristle and Gouache: patches of local medians that never average across an edge.
#pragma once

#include "render/plane.h"

namespace quentara {

/// A sample that sharpening moves further than this is an outlier and falls back to what it was.
constexpr int kOutlierLimit = 96;

/// With M1 and M2 the medians of the square and of the diamond window of radius `spread`, D1 and D2 their windows' mean
/// deviations, K1 the `WeighedMedians::CornerMeans` of (M1, D1) and K2 the `AxialMeans` of (M2, D2), at `spread`:
///   M = trunc(a * M2 + b * M1), K = a * K2 + b * K1, with b = 1 / spread and a = (spread - 1) / spread,
///   T = M + push * (K - M), limited to 0..255, unless `push` is 1 or T differs from M by more than `kOutlierLimit`;
///   otherwise T = K; result = trunc(T + 0.5).
/// From a spread of 3 on, the result is mixed with its median over a smaller window: half and half below 8, above with
/// the share (spread - 6) / (spread - 5) for the median. All of it in single precision.
///
/// @param plane    samples 0..255, of any size but empty.
/// @param spread   in pixels, >= 1.
/// @param push     >= 1; at 1 the means are not pushed away from the medians.
/// @param quality  `kHigh` does everything but the last median on the plane enlarged by 1.414213, with the same radii.
/// @return same size, samples 0..255.
BytePlane DeviationPaint(const BytePlane& plane, int spread, float push, int quality);

}  // namespace quentara
