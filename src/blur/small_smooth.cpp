#include "blur/small_smooth.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

namespace quentara {
namespace {

struct BinomialTaps {
  static float Inner(float before, float sample, float after) { return (before + 2.0f * sample + after) / 4.0f; }
  static float Edge(float sample, float neighbour) { return (neighbour + 2.0f * sample) / 3.0f; }
};

struct BoxTaps {
  static float Inner(float before, float sample, float after) { return (before + sample + after) / 3.0f; }
  static float Edge(float sample, float neighbour) { return (neighbour + sample) / 2.0f; }
};

template <class Taps>
void SmoothDown(const float* above, const float* row, const float* below, float* __restrict smoothed, int width) {
  for (int x = 0; x < width; ++x) smoothed[x] = Taps::Inner(above[x], row[x], below[x]);
}

// Both ends mix with a neighbour that is already smoothed, unless there are only the two of them.
template <class Taps>
void SmoothAcross(const float* row, float* __restrict smoothed, int width) {
  const int last = width - 1;
  smoothed[0] = row[0];
  smoothed[last] = row[last];
  for (int x = 1; x < last; ++x) smoothed[x] = Taps::Inner(row[x - 1], row[x], row[x + 1]);
  if (width < 2) return;
  const float first = Taps::Edge(row[0], smoothed[1]), end = Taps::Edge(row[last], smoothed[last - 1]);
  smoothed[0] = first;
  smoothed[last] = end;
}

// The first and last row, after every row has been smoothed across. Where there are edge columns these keep the
// corners.
template <class Taps>
void MixEdgeRows(FloatPlane& plane) {
  const int last = plane.rows() - 1, corner = plane.cols() > 1 ? 1 : 0;
  if (last < 1) return;
  float* const top = Row(plane, 0);
  float* const bottom = Row(plane, last);
  const float* const belowTop = Row(plane, 1);
  const float* const aboveBottom = Row(plane, last - 1);
  for (int x = corner; x < plane.cols() - corner; ++x) {
    const float mixedTop = Taps::Edge(top[x], belowTop[x]), mixedBottom = Taps::Edge(bottom[x], aboveBottom[x]);
    top[x] = mixedTop;
    bottom[x] = mixedBottom;
  }
}

// In place, a row at a time: only the row above is still needed as it was.
template <class Taps>
void SmoothInPlace(int passes, FloatPlane& plane) {
  assert(passes >= 0);
  const int height = plane.rows(), width = plane.cols();
  if (plane.numElements() == 0) return;
  std::vector<float> above(static_cast<std::size_t>(width)), smoothed(static_cast<std::size_t>(width));
  for (int pass = 0; pass < passes; ++pass) {
    for (int y = 0; y < height; ++y) {
      float* const row = Row(plane, y);
      if (y == 0 || y == height - 1)
        std::copy_n(row, width, smoothed.data());
      else
        SmoothDown<Taps>(above.data(), row, Row(plane, y + 1), smoothed.data(), width);
      std::copy_n(row, width, above.data());
      SmoothAcross<Taps>(smoothed.data(), row, width);
    }
    MixEdgeRows<Taps>(plane);
  }
}

// In strips of rows, whose floats stay in the cache. A pass reaches one row, but the first and last row mix with what
// the row beside them became: a strip of a few rows would be too short.
template <class Taps>
BytePlane SmoothBytes(int passes, const BytePlane& plane) {
  BytePlane smoothed(plane.rows(), plane.cols());
  const int height = plane.rows(), strip = 32 + 2 * passes, strips = std::max(height / strip, 1);
  for (int i = 0; i < strips; ++i) {
    const int start = strip * i, end = i == strips - 1 ? height : start + strip;
    const int from = std::max(start - passes, 0), to = std::min(end + passes, height);
    FloatPlane work(to - from, plane.cols());
    std::copy_n(Row(plane, from), work.numElements(), work.data());
    SmoothInPlace<Taps>(passes, work);
    const float* const kept = Row(work, start - from);
    std::transform(kept, kept + std::ptrdiff_t{end - start} * plane.cols(), Row(smoothed, start), ToByte);
  }
  return smoothed;
}

}  // namespace

BytePlane BinomialSmooth(int passes, const BytePlane& plane) {
  return SmoothBytes<BinomialTaps>(passes, plane);
}

BytePlane BoxSmooth3(int passes, const BytePlane& plane) {
  return SmoothBytes<BoxTaps>(passes, plane);
}

FloatPlane BoxSmooth3Float(int passes, const FloatPlane& plane) {
  FloatPlane smoothed(plane.copy());
  SmoothInPlace<BoxTaps>(passes, smoothed);
  return smoothed;
}

}  // namespace quentara
