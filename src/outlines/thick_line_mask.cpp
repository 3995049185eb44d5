#include "outlines/thick_line_mask.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "imageops/banded_filters.h"
#include "imageops/luma.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "outlines/compositing.h"
#include "outlines/rotate_image.h"
#include "platform/default_arithmetic.h"
#include "render/bands.h"
#include "render/settings.h"

namespace quentara {
namespace {

/// The measure of a pixel by its luma and the level around it, both bytes.
class LineShades {
 public:
  LineShades() {
    const platform::DefaultArithmetic arithmetic;  // the library is loaded in the host's
    for (std::size_t level = 0; level < 256; ++level)
      for (std::size_t luma = 0; luma < 256; ++luma) {
        const float ratio = std::min(256.0f * static_cast<float>(luma) / (static_cast<float>(level) + 1.0f), 255.0f);
        const unsigned char shade = level < 3 ? static_cast<unsigned char>(level) : ToByte(ratio);
        shades_[Place(luma, level)] = ToByte(SoftLightSelf(shade));
      }
  }

  void ShadeRun(const unsigned char* luma, const unsigned char* levels, unsigned char* lines,
                std::ptrdiff_t count) const {
    std::transform(luma, luma + count, levels, lines,
                   [this](unsigned char sample, unsigned char level) { return shades_[Place(sample, level)]; });
  }

 private:
  static std::size_t Place(std::size_t luma, std::size_t level) { return level * 256 + luma; }

  std::array<unsigned char, 256 * 256> shades_;
};

const LineShades kShades;

/// The square in which a luma plane is turned to its diagonals, and what of it is needed to come back.
class DiagonalSquare {
 public:
  explicit DiagonalSquare(const BytePlane& luma)
      : height_(luma.rows()),
        width_(luma.cols()),
        side_(Side(luma)),
        top_((side_ - 1) / 2 + 1 - height_ / 2),
        left_((side_ - 1) / 2 + 1 - width_ / 2),
        there_(side_, side_, 45.0f),
        back_(side_, side_, -45.0f),
        framed_(height_ + 2, width_ + 2) {
    ForRowBands(framed_.rows(), [&](int first, int count) {
      for (int y = first; y < first + count; ++y) {
        const unsigned char* const samples = Row(luma, std::clamp(y - 1, 0, height_ - 1));
        unsigned char* const row = Row(framed_, y);
        std::copy_n(samples, width_, row + 1);
        row[0] = samples[0];
        row[width_ + 1] = samples[width_ - 1];
      }
    });
  }

  int side() const { return side_; }

  BytePlane Turned(const Window& window) const { return RotateImage(there_, {framed_, top_ - 1, left_ - 1}, window); }

  /// Rows first .. first + count - 1 of the mask, from the measure of the turned square.
  BytePlane TurnedBack(const BytePlane& lines, int first, int count) const {
    return RotateImage(back_, {lines, 0, 0}, {top_ + 2 + first, left_ + 1, count, width_});
  }

  /// Strips of rows of the turned square that hold every pixel that `TurnedBack` looks at from row `firstRow` on.
  std::vector<Window> NeededStrips(int firstRow, int stripHeight) const {
    const std::vector<Columns> needed = NeededColumns(firstRow);
    std::vector<Window> strips;
    for (int first = 0; first < side_; first += stripHeight) {
      const int end = std::min(first + stripHeight, side_);
      Columns columns;
      for (int row = first; row < end; ++row) columns.Include(needed[static_cast<std::size_t>(row)]);
      if (columns.begin < columns.end)
        strips.push_back({first, columns.begin, end - first, columns.end - columns.begin});
    }
    return strips;
  }

 private:
  struct Columns {
    void Include(const Columns& other) {
      begin = std::min(begin, other.begin);
      end = std::max(end, other.end);
    }
    int begin = std::numeric_limits<int>::max();
    int end = 0;
  };

  // For each row of the turned square. The pixels that are looked at fill a convex outline, so its border alone says
  // where each row begins and ends; along it they lie less than a pixel apart in either direction, and interpolation
  // reaches one pixel further.
  std::vector<Columns> NeededColumns(int firstRow) const {
    std::vector<Columns> needed(static_cast<std::size_t>(side_));
    const auto visit = [&](int x, int y) {
      const int column = static_cast<int>(std::floor(back_.SourceX(x, y) - 0.5f));
      const int row = static_cast<int>(std::floor(back_.SourceY(x, y) - 0.5f));
      Columns columns;
      columns.begin = std::max(column - 1, 0);
      columns.end = std::min(column + 3, side_);
      for (int reached = std::max(row - 1, 0); reached <= std::min(row + 2, side_ - 1); ++reached)
        needed[static_cast<std::size_t>(reached)].Include(columns);
    };
    const int top = top_ + 2 + firstRow, bottom = top_ + 1 + height_, left = left_ + 1, right = left_ + width_;
    for (int x = left; x <= right; ++x) visit(x, top), visit(x, bottom);
    for (int y = top; y <= bottom; ++y) visit(left, y), visit(right, y);
    return needed;
  }

  static int Side(const BytePlane& luma) {
    const double h = luma.rows(), w = luma.cols();
    const int diagonal = static_cast<int>(std::floor(std::sqrt(w * w + h * h) + 0.5));
    return diagonal + (diagonal % 2 == 1 ? 4 : 5);
  }

  int height_;
  int width_;
  int side_;
  int top_;
  int left_;
  Rotation there_;
  Rotation back_;
  BytePlane framed_;
};

// Measures a strip of the turned square. The filters see what they reach around the strip, so that its own pixels come
// out as from the whole square.
void MeasureStrip(int thickness, const DiagonalSquare& square, const Window& strip, unsigned char* lines) {
  const int side = square.side();
  const auto before = [](int place, int reach) { return std::max(place - reach, 0); };
  const auto behind = [side](int place, int reach) { return std::min(place + reach, side); };
  const int stripEnd = strip.top + strip.height, right = behind(strip.left + strip.width, 2 * thickness);
  const int top = before(strip.top, 2 * thickness), left = before(strip.left, 2 * thickness);
  const int levelTop = before(strip.top, thickness), levelEnd = behind(stripEnd, thickness);
  const BytePlane luma(square.Turned({top, left, behind(stripEnd, 2 * thickness) - top, right - left}));
  BytePlane medians(levelEnd - levelTop, luma.cols()), levels(strip.height, luma.cols());
  MedianFilter(thickness, luma, {medians, levelTop - top});
  MaxFilter(thickness, medians, {levels, strip.top - levelTop});
  for (int y = 0; y < strip.height; ++y) {
    const int row = strip.top + y, column = strip.left - left;
    kShades.ShadeRun(Row(luma, row - top) + column, Row(levels, y) + column,
                     lines + static_cast<std::ptrdiff_t>(row) * side + strip.left, strip.width);
  }
}

// Uses up `luma`.
void AverageDiagonals(int thickness, BytePlane& luma, BytePlane& mask) {
  constexpr int kFirst = 2;
  const int rows = mask.rows() - kFirst;
  if (rows <= 0) return;
  const DiagonalSquare square(luma);
  luma.free();
  // Tall strips filter their overlap seldom, flat ones fit closely around the pixels needed.
  const int stripHeight = static_cast<int>(60.0 * std::sqrt(thickness));
  const std::vector<Window> strips = square.NeededStrips(kFirst, stripHeight);
  BytePlane lines(square.side(), square.side());
  std::atomic<std::size_t> next{0};  // strips differ in width: each worker takes the next one when it is done
  RunInWorkers(std::max(Plugin::ThreadCount(), 1), [&](int, int) {
    for (std::size_t i = next++; i < strips.size(); i = next++)
      MeasureStrip(thickness, square, strips[i], lines.data());
  });
  Plugin::CheckStop();
  ForRowBands(rows, [&](int first, int count) {
    constexpr int kRowsAtOnce = 64;
    for (int row = kFirst + first, end = row + count; row < end; row += kRowsAtOnce) {
      const BytePlane diagonals(square.TurnedBack(lines, row, std::min(kRowsAtOnce, end - row)));
      unsigned char* const samples = Row(mask, row);
      std::transform(diagonals.data(), diagonals.data() + diagonals.numElements(), samples, samples,
                     [](int a, int b) { return static_cast<unsigned char>((a + b + 1) / 2); });
    }
  });
}

}  // namespace

ChannelSet ThickLineMask(int thickness, const ChannelSet& image, int quality) {
  assert(thickness >= 1);
  Plugin::CheckStop();
  BytePlane luma(LumaPlane601(image));
  BytePlane levels(MedianInBands(thickness, luma));
  Plugin::CheckStop();
  levels.reference(MaxInBands(thickness, levels));
  Plugin::CheckStop();
  ChannelSet mask("L", image.width(), image.height());
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    kShades.ShadeRun(luma.data() + first, levels.data() + first, mask.planes(0).data() + first, count);
  });
  levels.free();
  if (quality == kHigh) AverageDiagonals(thickness, luma, mask.planes(0));
  return mask;
}

}  // namespace quentara
