#include "imageops/max_filter.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace quentara {
namespace {

using Sample = unsigned char;

struct Largest {
  static constexpr Sample kNeutral = 0;
  static Sample Of(Sample a, Sample b) { return a > b ? a : b; }
};

struct Smallest {
  static constexpr Sample kNeutral = 255;
  static Sample Of(Sample a, Sample b) { return a < b ? a : b; }
};

template <class Extreme>
void ExtremesOf(const Sample* a, const Sample* b, Sample* __restrict extremes, int count) {
  for (int i = 0; i < count; ++i) extremes[i] = Extreme::Of(a[i], b[i]);
}

template <class Extreme>
void Include(const Sample* __restrict samples, Sample* __restrict extremes, int count) {
  for (int i = 0; i < count; ++i) extremes[i] = Extreme::Of(samples[i], extremes[i]);
}

// Extremes of the clipped windows along a row. The buffers hold width + 2 * radius samples: neutral outside the row.
template <class Extreme>
void ExtremesAlongRow(int radius, const Sample* row, int width, Sample* buffer, Sample* spare, Sample* extremes) {
  const int side = 2 * radius + 1, padded = width + 2 * radius;
  std::fill_n(buffer, radius, Extreme::kNeutral);
  std::copy_n(row, width, buffer + radius);
  std::fill_n(buffer + radius + width, radius, Extreme::kNeutral);
  int run = 1;  // buffer[i] is the extreme of `run` samples from i on
  for (; 2 * run <= side; run *= 2, std::swap(buffer, spare))
    ExtremesOf<Extreme>(buffer, buffer + run, spare, padded - 2 * run + 1);
  ExtremesOf<Extreme>(buffer, buffer + side - run, extremes, width);
}

template <class Extreme>
BytePlane ExtremeFilter(int radius, const BytePlane& plane) {
  assert(radius >= 0);
  const int height = plane.rows(), width = plane.cols();
  // Beyond the plane's size a radius changes nothing but the size of the buffers.
  const int across = std::min(radius, width), down = std::min(radius, height), side = 2 * down + 1;
  BytePlane result(height, width), buffers(2, width + 2 * across);
  BytePlane rows(side, width);    // extremes along rows start - down .. start + down, then along those that follow
  BytePlane suffix(side, width);  // row i: the extremes of `rows` from row i of the block to its end
  BytePlane prefix(1, width);     // the extremes of the rows behind the block that the window has reached
  const auto load = [&](int y, Sample* extremes) {
    if (y < 0 || y >= height)
      std::fill_n(extremes, width, Extreme::kNeutral);
    else
      ExtremesAlongRow<Extreme>(across, Row(plane, y), width, Row(buffers, 0), Row(buffers, 1), extremes);
  };
  for (int i = 0; i < side; ++i) load(i - down, Row(rows, i));
  for (int start = 0; start < height; start += side) {
    std::copy_n(Row(rows, side - 1), width, Row(suffix, side - 1));
    for (int i = side - 2; i >= 0; --i) ExtremesOf<Extreme>(Row(rows, i), Row(suffix, i + 1), Row(suffix, i), width);
    prefix = Extreme::kNeutral;
    for (int i = 0; i < std::min(side, height - start); ++i) {
      ExtremesOf<Extreme>(Row(suffix, i), Row(prefix, 0), Row(result, start + i), width);
      load(start + down + 1 + i, Row(rows, i));
      Include<Extreme>(Row(rows, i), Row(prefix, 0), width);
    }
  }
  return result;
}

}  // namespace

BytePlane MaxFilter(int radius, const BytePlane& plane) {
  return ExtremeFilter<Largest>(radius, plane);
}

BytePlane MinFilter(int radius, const BytePlane& plane) {
  return ExtremeFilter<Smallest>(radius, plane);
}

}  // namespace quentara
