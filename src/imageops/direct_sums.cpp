#include "imageops/direct_sums.h"

#include <algorithm>
#include <cstddef>

#include "imageops/window_kernels_dispatch.h"
#include "render/scratch.h"

namespace quentara {
namespace {

// Calls add(taps, samples) for the samples of all windows of row y: samples[x] .. samples[x + taps - 1] for pixel x.
template <class Add>
void ForTaps(WindowReach reach, const BytePlane& padded, int y, int mostTaps, const Add& add) {
  const int side = 2 * reach.columns + 1;
  for (int row = std::max(y - reach.rows, 0); row <= std::min(y + reach.rows, padded.rows() - 1); ++row)
    for (int tap = 0; tap < side; tap += mostTaps) add(std::min(mostTaps, side - tap), Row(padded, row) + tap);
}

// Calls pixel(x, samples) for the pixels whose windows reach into the padding, with the padding's share of the window.
template <class Pixel>
void ForPaddedWindows(WindowReach reach, int y, int height, int width, const Pixel& pixel) {
  const int rows = ClippedExtent(y, reach.rows, height);
  const auto visit = [&](int x) { pixel(x, rows * (2 * reach.columns + 1 - ClippedExtent(x, reach.columns, width))); };
  for (int x = 0; x < std::min(reach.columns, width); ++x) visit(x);
  for (int x = std::max(width - reach.columns, reach.columns); x < width; ++x) visit(x);
}

}  // namespace

BytePlane PadRows(const BytePlane& plane, int columns) {
  BytePlane padded(plane.rows(), plane.cols() + 2 * columns);
  padded = 0;
  for (int y = 0; y < plane.rows(); ++y) std::copy_n(Row(plane, y), plane.cols(), Row(padded, y) + columns);
  return padded;
}

void RangeMeanFromDirectSums(WindowReach reach, const BytePlane& centre, const BytePlane& values, int limit,
                             BytePlane& result) {
  const int height = values.rows(), width = values.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const BytePlane padded(PadRows(values, reach.columns));
  const int mostTaps = std::min(kMostTaps, 255 / (2 * limit + 1));
  const std::size_t count = static_cast<std::size_t>(width);
  Scratch<unsigned char> highest(count), span(count);
  Scratch<unsigned short> sums(count), counts(count);
  for (int y = 0; y < height; ++y) {
    kernels.rangesOf(Row(centre, y), limit, highest.data(), span.data(), width);
    std::fill_n(sums.data(), count, static_cast<unsigned short>(0));
    std::fill_n(counts.data(), count, static_cast<unsigned short>(0));
    ForTaps(reach, padded, y, mostTaps, [&](int taps, const unsigned char* samples) {
      kernels.addNear[taps](samples, highest.data(), span.data(), sums.data(), counts.data(), width);
    });
    // The padding's zeros count where a range reaches down to 0, each of them 0 + 1 above the range: out with them.
    ForPaddedWindows(reach, y, height, width, [&](int x, int outside) {
      if (span[x] != highest[x] + 1) return;
      sums[x] = static_cast<unsigned short>(sums[x] - outside);
      counts[x] = static_cast<unsigned short>(counts[x] - outside);
    });
    kernels.meanOfNear(sums.data(), counts.data(), highest.data(), span.data(), Row(result, y), width);
  }
}

void DeviationFromDirectSums(WindowReach reach, const BytePlane& values, const BytePlane& medians, FloatPlane& result) {
  const int height = values.rows(), width = values.cols();
  const DirectKernels& kernels = ActiveKernels().direct;
  const BytePlane padded(PadRows(values, reach.columns));
  const std::size_t count = static_cast<std::size_t>(width);
  Scratch<int> sums(count), sizes(count);
  for (int y = 0; y < height; ++y) {
    std::fill_n(sums.data(), count, 0);
    std::fill_n(sizes.data(), count, ClippedExtent(y, reach.rows, height) * (2 * reach.columns + 1));
    ForTaps(reach, padded, y, kMostTaps, [&](int taps, const unsigned char* samples) {
      kernels.addDistances[taps](samples, Row(medians, y), sums.data(), width);
    });
    ForPaddedWindows(reach, y, height, width, [&](int x, int outside) {
      sums[x] -= outside * Row(medians, y)[x];
      sizes[x] -= outside;
    });
    for (int x = 0; x < width; ++x) Row(result, y)[x] = static_cast<float>(sums[x]) / static_cast<float>(sizes[x]);
  }
}

}  // namespace quentara
