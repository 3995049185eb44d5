#include "imageops/box_mean_filter.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "imageops/window_kernels_dispatch.h"
#include "imageops/window_reach.h"
#include "render/scratch.h"

namespace quentara {

void BoxMeanFilter(int radius, const BytePlane& plane, ByteRows result) {
  assert(radius >= 0);
  constexpr int kSlack = 32;  // kernels take whole registers
  const int height = plane.rows(), width = plane.cols();
  const int across = std::min(radius, width), down = std::min(radius, height);
  const BoxKernels& kernels = ActiveKernels().box;
  Scratch<unsigned char> outside(static_cast<std::size_t>(width));
  Scratch<int> sums(static_cast<std::size_t>(across + 1 + width + across + kSlack));
  Scratch<float> counts(static_cast<std::size_t>(width + kSlack));
  int* const columns = sums.data() + across + 1;
  const auto row = [&](int y) { return y >= 0 && y < height ? Row(plane, y) : outside.data(); };
  for (int y = result.first - down - 1; y < result.first + down; ++y)
    kernels.slideColumns(row(y), outside.data(), columns, width);
  for (int y = result.first; y < result.end(); ++y) {
    kernels.slideColumns(row(y + down), row(y - down - 1), columns, width);
    if (y == result.first || y <= down || y >= height - down) {
      const int rows = ClippedExtent(y, down, height);
      for (int x = 0; x < width + kSlack; ++x)
        counts[x] = static_cast<float>(rows * ClippedExtent(std::min(x, width - 1), across, width));
    }
    kernels.meansOfColumns(columns, across, counts.data(), Row(result, y), width);
  }
}

BytePlane BoxMeanFilter(int radius, const BytePlane& plane) {
  BytePlane result(plane.rows(), plane.cols());
  BoxMeanFilter(radius, plane, {result});
  return result;
}

}  // namespace quentara
