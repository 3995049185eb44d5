#include "imageops/median_networks.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "imageops/window_kernels_dispatch.h"
#include "render/scratch.h"

namespace quentara {
namespace {

using Sample = unsigned char;

// The networks know whole windows only. So beyond an edge lie samples that do not move the median: blacks and whites,
// in turns half of a window's side rounded down and up. They recur with the side, so that every window has as many of
// them.
Sample Padding(int radius, int distance, int place) {
  const int blacks = distance % 2 == 1 ? radius : radius + 1;
  return place % (2 * radius + 1) < blacks ? 0 : 255;
}

/// The rows behind two rows of pixels, padded and split into even and odd columns.
class SplitRows {
 public:
  // To be stepped through from row `first` on.
  SplitRows(int radius, const BytePlane& plane, int first)
      : radius_(radius),
        count_(2 * radius + 2),
        plane_(plane),
        width_(plane.cols() / 2 + radius + 1),
        pitch_((width_ + 31) / 32 * 32 + kSlack),
        padding_(static_cast<std::size_t>(plane.cols())),
        samples_(static_cast<std::size_t>(kSlack + 2 * pitch_ * count_)),
        even_(static_cast<std::size_t>(count_)),
        odd_(even_) {
    for (int i = 0; i < count_ - 2; ++i) Load(first + i - radius_);
  }

  // Turns to the rows behind pixels of rows y and y + 1, which follow those of y - 2 and y - 1.
  TileRow StepTo(int y, Sample* upper, Sample* lower) {
    Load(y + radius_), Load(y + radius_ + 1);
    for (int i = 0; i < count_; ++i) {
      const auto place = static_cast<std::size_t>(i);
      even_[place] = Place(y - radius_ + i), odd_[place] = even_[place] + pitch_;
    }
    return {even_.data(), odd_.data(), width_, upper, lower, plane_.cols()};
  }

 private:
  Sample* Place(int y) { return samples_.data() + kSlack + 2 * pitch_ * ((y + radius_) % count_); }

  void Load(int y) {
    const int width = plane_.cols(), height = plane_.rows();
    Sample *const even = Place(y), *const odd = even + pitch_;
    const Sample* samples = padding_.data();
    if (y >= 0 && y < height)
      samples = Row(plane_, y);
    else
      for (int x = 0; x < width; ++x) padding_[x] = Padding(radius_, y < 0 ? -y : y - height + 1, x);
    // The first sample is column `radius`.
    if (radius_ % 2 == 0)
      ActiveKernels().median.splitColumns(samples, even + radius_ / 2, odd + radius_ / 2, width);
    else
      ActiveKernels().median.splitColumns(samples, odd + radius_ / 2, even + (radius_ + 1) / 2, width);
    for (int d = 1; d <= radius_; ++d)
      for (const int column : {radius_ - d, radius_ + width - 1 + d})
        (column % 2 == 0 ? even : odd)[column / 2] = Padding(radius_, d, y + radius_);
  }

  static constexpr int kSlack = 32;  // kernels look at the columns in front of a row, though nothing comes of it

  const int radius_, count_;
  const BytePlane& plane_;
  const int width_, pitch_;
  Scratch<Sample> padding_, samples_;
  std::vector<const Sample*> even_, odd_;
};

// The same for windows of 3 x 3, which are too small to pay for the splitting.
void MedianOfNines(const BytePlane& plane, ByteRows result) {
  const int height = plane.rows(), width = plane.cols();
  Scratch<Sample> outside(static_cast<std::size_t>(width)), spare(static_cast<std::size_t>(width));
  for (int x = 0; x < width; ++x) outside[x] = Padding(1, 1, x);
  const std::ptrdiff_t pitch = width + 64;  // rows of columns start in the middle
  Scratch<Sample> columns(static_cast<std::size_t>(6 * pitch));
  for (int y = result.first; y < result.end(); y += 2) {
    const Sample* rows[4];
    for (int i = 0; i < 4; ++i) rows[i] = y + i >= 1 && y + i <= height ? Row(plane, y + i - 1) : outside.data();
    Sample* const lower = y + 1 < result.end() ? Row(result, y + 1) : spare.data();
    ActiveKernels().median.medianOfNines({rows, columns.data() + 32, pitch, Row(result, y), lower, width});
  }
}

}  // namespace

void MedianFromNetworks(int radius, const BytePlane& plane, ByteRows result) {
  assert(radius >= 1 && radius <= kMostNetworkRadius && std::min(plane.rows(), plane.cols()) > 2 * radius);
  if (radius == 1 && plane.cols() >= kMostByteLanes) return MedianOfNines(plane, result);
  SplitRows rows(radius, plane, result.first);
  const auto medianOfTiles = ActiveKernels().median.medianOfTiles[radius];
  Scratch<Sample> spare(static_cast<std::size_t>(plane.cols()));  // for the row below an odd number of them
  for (int y = result.first; y < result.end(); y += 2)
    medianOfTiles(rows.StepTo(y, Row(result, y), y + 1 < result.end() ? Row(result, y + 1) : spare.data()));
}

}  // namespace quentara
