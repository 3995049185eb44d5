#include "outlines/marker_lines.h"

#include <algorithm>
#include <cassert>
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
  for (int y = 1; y < lines.rows() - 1; ++y)
    for (int x = 1; x < lines.cols() - 1; ++x)
      if (Row(lines, y)[x] == kLine) pixels.push_back(y * lines.cols() + x);
  return pixels;
}

bool Fits(const LineTemplate& t, const Sample* pixel) {
  return *pixel == kLine && (pixel[t.set[0]] & pixel[t.set[1]] & pixel[t.set[2]]) == kPaper &&
         (pixel[t.clear[0]] | pixel[t.clear[1]] | pixel[t.clear[2]]) == kLine;
}

// Erases all pixels that fit at once, as one that is gone may keep its neighbour from fitting.
bool ErasePass(const LineTemplate& t, Sample* samples, Pixels& pixels) {
  Pixels fitting;
  const auto fits = [&](int pixel) { return Fits(t, samples + pixel); };
  std::copy_if(pixels.begin(), pixels.end(), std::back_inserter(fitting), fits);
  for (const int pixel : fitting) samples[pixel] = kPaper;
  return !fitting.empty();
}

void Thin(BytePlane& lines, Pixels& pixels) {
  for (bool changed = true; changed;) {
    changed = false;
    for (const LineTemplate& t : LineTemplates(lines.cols())) changed |= ErasePass(t, lines.data(), pixels);
    const auto erased = [&](int pixel) { return lines.data()[pixel] == kPaper; };
    pixels.erase(std::remove_if(pixels.begin(), pixels.end(), erased), pixels.end());
  }
}

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
  Thin(lines, pixels);
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
