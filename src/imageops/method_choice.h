/// Where one method of a window filter overtakes the next. Measured by scripts/bench on the natural plane; a method
/// that is faster for a while and then meets the limit of its counters ends at the limit.
#pragma once

#include "imageops/window_kernels.h"
#include "imageops/window_reach.h"

namespace quentara {

/// The largest window that a method takes; beyond it the filter goes through histograms.
constexpr int kMostSamplesOfDirectMean = 15 * 15;       ///< range mean, square or line
constexpr int kMostSamplesOfDirectDeviation = 23 * 23;  ///< mean deviation
constexpr int kMostSamplesOfQuadDeviation = 29 * 29;    ///< the same by quads
constexpr int kMostCountsOfBisection = 650;             ///< range median: samples, times how often each is counted
constexpr int kMostRadiusOfDirectDiamondDeviation = 20;

/// Median by sorting networks, which need a plane that is larger than the window.
inline bool PrefersNetworks(int radius, int height, int width) {
  return radius >= 1 && radius <= kMostNetworkRadius && height > 2 * radius && width > 2 * radius;
}

/// Range mean by direct sums: a byte counts the samples of a row or column, 16 bits hold the sum of the distances.
inline bool PrefersDirectMean(WindowReach reach, int limit) {
  const int samples = SampleCount(reach);
  return limit <= 127 && reach.rows <= 127 && reach.columns <= 127 && samples <= kMostSamplesOfDirectMean &&
         samples * (2 * limit + 1) <= 65535;
}

/// The same for diamonds, where the kernels need whole registers, too.
inline bool PrefersDiamondNetworks(int radius, int height, int width) {
  const int least = 2 * radius + kMostByteLanes;
  return radius >= 1 && radius <= kMostNetworkDiamond && height >= least && width >= least;
}
inline bool PrefersDirectDiamondDeviation(int radius) {
  return radius <= kMostRadiusOfDirectDiamondDeviation;
}

/// How often a range of 2 * limit + 1 values is halved until one is left.
inline int BisectionSteps(int limit) {
  int steps = 0;
  while (steps < 8 && 2 * limit >> steps > 0) ++steps;
  return steps;
}
/// Range median by bisection: bytes count the samples.
inline bool PrefersBisection(WindowReach reach, int limit, int width) {
  const int samples = SampleCount(reach), counts = 2 + BisectionSteps(limit);
  return samples <= 255 && samples * counts <= kMostCountsOfBisection && width >= kBisectedPixels;
}

/// Mean deviation by quads, where the processor has the instructions and a row fills its registers.
inline bool PrefersQuads(WindowReach reach, int width, bool available) {
  return available && width >= kMostByteLanes && SampleCount(reach) <= kMostSamplesOfQuadDeviation;
}

/// Mean deviation by direct sums.
inline bool PrefersDirectDeviation(WindowReach reach) {
  return SampleCount(reach) <= kMostSamplesOfDirectDeviation;
}

}  // namespace quentara
