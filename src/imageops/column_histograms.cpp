#include "imageops/column_histograms.h"

#include <cstddef>

namespace quentara {
namespace {

constexpr int kSegments = 16;

// An odd number of cache lines: counters of one column in different segments then compete for no set of the cache.
int Pitch(int columns) {
  return ((16 * columns + 63) / 64 | 1) * 64;
}

}  // namespace

bool FitsColumnHistograms(WindowReach reach, int height, int width, int mostSamples) {
  const int rows = ClippedExtent(0, 2 * std::min(reach.rows, height), height);
  const int columns = ClippedExtent(0, 2 * std::min(reach.columns, width), width);
  return rows <= 255 && rows * columns <= mostSamples;
}

ColumnHistograms::ColumnHistograms(WindowReach reach, const BytePlane& values, bool coarse)
    : reach_{std::min(reach.rows, values.rows()), std::min(reach.columns, values.cols())},
      values_(values),
      coarse_(coarse),
      largeWindows_(!FitsColumnHistograms(reach, values.rows(), values.cols())),
      pitch_(Pitch(std::min(kStrip, values.cols()) + 2 * reach_.columns + 1)),
      counters_(kSegments + 1, pitch_) {}

void ColumnHistograms::StartStrip(int x, int width) {
  width_ = width;
  firstColumn_ = std::max(x - reach_.columns, 0);
  endColumn_ = std::min(x + width + reach_.columns, values_.cols());
  firstCounter_ = firstColumn_ - (x - reach_.columns);
  counters_ = 0;
  for (int y = 0; y <= std::min(reach_.rows, values_.rows() - 1); ++y) AddRow(y, 1);
}

void ColumnHistograms::StepTo(int y) {
  if (y + reach_.rows < values_.rows()) AddRow(y + reach_.rows, 1);
  if (y - reach_.rows - 1 >= 0) AddRow(y - reach_.rows - 1, -1);
}

void ColumnHistograms::AddRow(int y, int step) {
  // Counters are bytes, which may alias anything: only locals stay in registers.
  const unsigned char* const samples = Row(values_, y) + firstColumn_;
  unsigned char* const fine = counters_.data() + 16 * firstCounter_;
  unsigned char* const coarse = fine + static_cast<std::ptrdiff_t>(kSegments) * pitch_;
  const std::ptrdiff_t pitch = pitch_, count = endColumn_ - firstColumn_;
  const unsigned char change = static_cast<unsigned char>(step);
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const std::ptrdiff_t segment = samples[i] / 16, lane = samples[i] % 16;
    fine[segment * pitch + 16 * i + lane] += change;
  }
  if (coarse_)
    for (std::ptrdiff_t i = 0; i < count; ++i) coarse[16 * i + samples[i] / 16] += change;
}

HistogramRow ColumnHistograms::row() const {
  const unsigned char* const counters = counters_.data();
  return {counters,
          coarse_ ? counters + static_cast<std::ptrdiff_t>(kSegments) * pitch_ : nullptr,
          static_cast<std::size_t>(pitch_),
          2 * reach_.columns + 1,
          width_,
          largeWindows_};
}

}  // namespace quentara
