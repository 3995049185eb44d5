#include "outlines/marker_lines.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

#include "imageops/max_filter.h"
#include "outlines/line_ring.h"
#include "outlines/line_thickening.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Sample = unsigned char;
constexpr Sample kLine = 0, kPaper = 255;

/// Pixels by their index in the plane, row * width + column.
using Pixels = std::vector<int>;

void MarkBorders(int minimumDifference, const Sample* samples, const Sample* largest, const Sample* smallest,
                 Sample* __restrict borders, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const int above = largest[i] - samples[i], below = samples[i] - smallest[i];
    borders[i] = std::max(above, below) >= minimumDifference ? kLine : kPaper;
  }
}

BytePlane BorderMap(int minimumDifference, const BytePlane& plane) {
  return FilterInBands(
      1,
      [&](const BytePlane& band) {
        const BytePlane largest(MaxFilter(1, band)), smallest(MinFilter(1, band));
        BytePlane borders(band.rows(), band.cols());
        MarkBorders(minimumDifference, band.data(), largest.data(), smallest.data(), borders.data(),
                    band.numElements());
        return borders;
      },
      plane);
}

Pixels InnerLinePixels(const BytePlane& lines) {
  Pixels pixels;
  const int width = lines.cols();
  const Sample* const samples = lines.data();
  for (int y = 1; y < lines.rows() - 1; ++y) {
    const int end = (y + 1) * width - 1;
    for (int pixel = y * width + 1; pixel < end; ++pixel) {
      const void* const next = std::memchr(samples + pixel, kLine, static_cast<std::size_t>(end - pixel));
      if (next == nullptr) break;
      pixel = static_cast<int>(static_cast<const Sample*>(next) - samples);
      pixels.push_back(pixel);
    }
  }
  return pixels;
}

/// Thins lines to a width of one pixel, with the ring of each listed pixel at hand: bit i says that the ring neighbour
/// i is line.
class Thinning {
 public:
  Thinning(BytePlane& lines, Pixels& pixels)
      : samples_(lines.data()),
        pixels_(pixels),
        offsets_(RingOffsets(lines.cols())),
        rings_(lines.shape()),
        fitting_(pixels.size()) {
    std::fill_n(rings_.data(), rings_.numElements(), Sample{0});
    for (const int pixel : pixels_)
      for (std::size_t i = 0; i < 8; ++i)
        rings_.data()[pixel] |= static_cast<Sample>((samples_[pixel + offsets_[i]] == kLine) << i);
  }

  void Run() {
    std::size_t left;
    do {
      left = pixels_.size();
      for (int turn = 0; turn < 8; ++turn) Pass(turn);
      const auto erased = [&](int pixel) { return samples_[pixel] == kPaper; };
      pixels_.erase(std::remove_if(pixels_.begin(), pixels_.end(), erased), pixels_.end());
    } while (pixels_.size() < left);
  }

 private:
  static Sample Turned(unsigned ring, int turn) { return static_cast<Sample>((ring << turn) | (ring >> (8 - turn))); }

  // Erases all pixels that fit at once, as one that is gone may keep its neighbour from fitting.
  void Pass(int turn) {
    const Sample seen = Turned(kSeen, turn), wanted = Turned(kWanted, turn);
    std::size_t count = 0;
    for (const int pixel : pixels_) {
      fitting_[count] = pixel;  // without a branch: whether it fits cannot be foreseen
      count += (rings_.data()[pixel] & seen) == wanted;
    }
    std::for_each_n(fitting_.begin(), count, [&](int pixel) { Erase(pixel); });
  }

  // Without a line in its ring it fits no more.
  void Erase(int pixel) {
    samples_[pixel] = kPaper;
    rings_.data()[pixel] = 0;
    for (std::size_t i = 0; i < 8; ++i) rings_.data()[pixel + offsets_[i]] &= static_cast<Sample>(~(1u << (i + 4) % 8));
  }

  static constexpr unsigned kSeen = 0b01110111, kWanted = 0b01110000;  ///< of the first template, see `LineTemplates`

  Sample* const samples_;
  Pixels& pixels_;
  const Ring offsets_;
  BytePlane rings_;
  Pixels fitting_;
};

// What is left when no pixel can go any more does not depend on the order in which they went, so each pixel's
// neighbours follow it at once. Pixels of the frame count as neighbours and stay.
void Prune(BytePlane& lines, Pixels pixels) {
  const int width = lines.cols(), lastRow = lines.rows() - 1;
  const int direct[] = {-width, -1, 1, width};
  Sample* const samples = lines.data();
  while (!pixels.empty()) {
    const int pixel = pixels.back();
    pixels.pop_back();
    const int y = pixel / width, x = pixel % width;
    if (samples[pixel] != kLine || y == 0 || y == lastRow || x == 0 || x == width - 1) continue;
    const auto isLine = [&](int offset) { return samples[pixel + offset] == kLine; };
    if (std::count_if(std::begin(direct), std::end(direct), isLine) >= 2) continue;
    samples[pixel] = kPaper;
    for (const int offset : direct) pixels.push_back(pixel + offset);
  }
}

// Whether a line pixel of the frame touches no line that comes in, and goes on along the frame on one side at most.
// What lies outside the plane is paper.
bool IsLoose(const BytePlane& lines, int y, int x) {
  const int lastRow = lines.rows() - 1, lastColumn = lines.cols() - 1;
  const bool inRow = y == 0 || y == lastRow, inColumn = x == 0 || x == lastColumn;
  int inward = 0, along = 0;
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx) {
      const int j = y + dy, i = x + dx;
      if ((dy == 0 && dx == 0) || j < 0 || j > lastRow || i < 0 || i > lastColumn) continue;
      if (Row(lines, j)[i] != kLine) continue;
      const bool onFrame = (inRow && dy == 0) || (inColumn && dx == 0);
      ++(onFrame && !(inRow && inColumn) ? along : inward);
    }
  return inward == 0 && along <= 1;
}

void ClearFrame(BytePlane& lines) {
  const int height = lines.rows(), width = lines.cols();
  std::vector<Sample*> loose;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; x += y == 0 || y == height - 1 ? 1 : std::max(width - 1, 1))
      if (Row(lines, y)[x] == kLine && IsLoose(lines, y, x)) loose.push_back(Row(lines, y) + x);
  for (Sample* const sample : loose) *sample = kPaper;
}

void Invert(BytePlane& plane) {
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    Sample* const samples = plane.data() + first;
    std::transform(samples, samples + count, samples, [](Sample sample) { return static_cast<Sample>(255 - sample); });
  });
}

}  // namespace

BytePlane MarkerLines(int thickness, int minimumDifference, const BytePlane& plane) {
  assert(thickness >= 1 && minimumDifference >= 1);
  BytePlane lines(BorderMap(minimumDifference, plane));
  Pixels pixels = InnerLinePixels(lines);
  Thinning(lines, pixels).Run();
  Prune(lines, std::move(pixels));
  ClearFrame(lines);
  Plugin::CheckStop();
  Invert(lines);
  lines.reference(FilterInBands(
      thickness, [&](const BytePlane& band) { return ThickenLines(thickness - 1, band); }, lines));
  Invert(lines);
  return lines;
}

}  // namespace quentara
