#include "paint/deviation_paint.h"

#include <algorithm>
#include <cassert>

#include "imageops/banded_filters.h"
#include "imageops/diamond_filters.h"
#include "imageops/resample.h"
#include "imageops/sample_range.h"
#include "paint/weighed_medians.h"
#include "render/bands.h"
#include "render/scratch.h"
#include "render/settings.h"

namespace quentara {
namespace {

constexpr float kEnlargement = 1.414213f;

/// The shares of two planes in a mix.
struct Shares {
  float first;
  float second;
};

// A row of the result, from rows of both medians and both means.
void BlendRow(const Shares& shares, float push, const unsigned char* diamond, const unsigned char* square,
              const float* axial, const float* corner, unsigned char* __restrict result, int width) {
  constexpr float kLimit = kOutlierLimit;
  for (int x = 0; x < width; ++x) {
    const float median = static_cast<float>(static_cast<int>(shares.first * diamond[x] + shares.second * square[x]));
    const float mean = shares.first * axial[x] + shares.second * corner[x];
    const float pushed = std::clamp(median + push * (mean - median), 0.0f, 255.0f);
    const bool kept = push != 1.0f && pushed <= median + kLimit && pushed >= median - kLimit;
    result[x] = ToByte(kept ? pushed : mean);
  }
}

BytePlane PaintCore(const BytePlane& plane, int spread, float push) {
  const auto inBands = [&](const auto& filter, const auto&... planes) {
    return FilterInBands(
        spread, [&](const auto&... bands) { return filter(spread, bands...); }, planes...);
  };
  const BytePlane square(MedianInBands(spread, plane)), diamond(inBands(DiamondMedianFilter, plane));
  Plugin::CheckStop();
  const FloatPlane squareDeviation(MedianDeviationInBands(spread, plane, square));
  const FloatPlane diamondDeviation(inBands(DiamondDeviationFilter, plane, diamond));
  Plugin::CheckStop();
  const Shares shares = {static_cast<float>(spread - 1) / static_cast<float>(spread),
                         1.0f / static_cast<float>(spread)};
  const WeighedMedians::Planes squares = {square, squareDeviation, RangeOf(squareDeviation).least};
  const WeighedMedians::Planes diamonds = {diamond, diamondDeviation, RangeOf(diamondDeviation).least};
  BytePlane result(plane.rows(), plane.cols());
  ForRowBands(plane.rows(), [&](int firstRow, int rows) {
    const auto width = static_cast<std::size_t>(plane.cols());
    Scratch<float> corner(width), axial(width);
    WeighedMedians corners(spread, squares, firstRow), axes(spread, diamonds, firstRow);
    for (int y = firstRow; y < firstRow + rows; ++y) {
      corners.CornerMeans(y, corner.data());
      axes.AxialMeans(y, axial.data());
      BlendRow(shares, push, Row(diamond, y), Row(square, y), axial.data(), corner.data(), Row(result, y),
               plane.cols());
    }
  });
  return result;
}

BytePlane MixWithMedian(int radius, const Shares& shares, const BytePlane& plane) {
  BytePlane mixed(MedianInBands(radius, plane));
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    const auto mix = [&](int median, int sample) { return ToByte(shares.first * median + shares.second * sample); };
    unsigned char* const medians = mixed.data() + first;
    std::transform(medians, medians + count, plane.data() + first, medians, mix);
  });
  return mixed;
}

int Enlarged(int size) {
  return static_cast<int>(static_cast<float>(size) * kEnlargement);
}

}  // namespace

BytePlane DeviationPaint(const BytePlane& plane, int spread, float push, int quality) {
  assert(spread >= 1 && push >= 1.0f && plane.numElements() > 0);
  const int height = plane.rows(), width = plane.cols();
  const bool high = quality == kHigh;
  const BytePlane painted(
      high
          ? ResampleLuma(PaintCore(ResampleLuma(plane, Enlarged(height), Enlarged(width)), spread, push), height, width)
          : PaintCore(plane, spread, push));
  if (spread < 3) return painted;
  const auto radius = static_cast<float>(spread - 2);
  const auto divisor = static_cast<float>(spread - 5);
  const Shares shares =
      spread < 8 ? Shares{0.5f, 0.5f} : Shares{static_cast<float>(spread - 6) / divisor, 1.0f / divisor};
  return MixWithMedian(high ? static_cast<int>(radius / kEnlargement + 0.5f) : spread - 2, shares, painted);
}

}  // namespace quentara
