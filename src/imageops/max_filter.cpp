#include "imageops/max_filter.h"

#include <algorithm>
#include <cassert>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

// Down the columns in blocks of as many rows as a window has: it ends in the block below that in which it begins.
void ExtremeFilter(const ExtremeKernels& kernels, unsigned char neutral, int radius, const BytePlane& plane,
                   ByteRows result) {
  assert(radius >= 0);
  const int height = plane.rows(), width = plane.cols();
  // Beyond the plane's size a radius changes nothing but the size of the buffers.
  const int across = std::min(radius, width), down = std::min(radius, height), side = 2 * down + 1;
  BytePlane buffers(2, width + 2 * across);
  BytePlane suffix(side, width);  // row i: the extremes of the block from its row i on
  BytePlane prefix(1, width);     // the extremes of those rows below the block that the window has reached
  BytePlane outside(1, width);
  buffers = neutral, outside = neutral;
  const auto source = [&](int y) { return y >= 0 && y < height ? Row(plane, y) : Row(outside, 0); };
  unsigned char* const samples = Row(buffers, 0);
  for (int start = result.first; start < result.end(); start += side) {
    std::copy_n(source(start + down), width, Row(suffix, side - 1));
    for (int i = side - 2; i >= 0; --i)
      kernels.ofPairs(source(start - down + i), Row(suffix, i + 1), Row(suffix, i), width);
    prefix = neutral;
    for (int i = 0; i < std::min(side, result.end() - start); ++i) {
      if (i > 0) kernels.include(source(start + down + i), Row(prefix, 0), width);
      std::fill_n(samples, across, neutral);
      kernels.ofPairs(Row(suffix, i), Row(prefix, 0), samples + across, width);
      std::fill_n(samples + across + width, across, neutral);
      kernels.ofWindows(2 * across + 1, samples, Row(buffers, 1), Row(result, start + i), width);
    }
  }
}

}  // namespace

void MaxFilter(int radius, const BytePlane& plane, ByteRows result) {
  ExtremeFilter(ActiveKernels().largest, 0, radius, plane, result);
}

BytePlane MaxFilter(int radius, const BytePlane& plane) {
  BytePlane result(plane.rows(), plane.cols());
  MaxFilter(radius, plane, {result});
  return result;
}

void MinFilter(int radius, const BytePlane& plane, ByteRows result) {
  ExtremeFilter(ActiveKernels().smallest, 255, radius, plane, result);
}

BytePlane MinFilter(int radius, const BytePlane& plane) {
  BytePlane result(plane.rows(), plane.cols());
  MinFilter(radius, plane, {result});
  return result;
}

}  // namespace quentara
