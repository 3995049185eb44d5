#include "outlines/rotate_image.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

struct Span {
  int begin;
  int end;
};

// The end of the leading run of [begin, end) for which `holds`; it holds nowhere behind that run.
template <class Predicate>
int RunEnd(int begin, int end, const Predicate& holds) {
  while (begin < end) {
    const int middle = begin + (end - begin) / 2;
    if (holds(middle))
      begin = middle + 1;
    else
      end = middle;
  }
  return begin;
}

// Where column[x] + row lies in lowest .. limit, the limit excluded.
Span Within(Span span, const float* column, float row, float lowest, float limit) {
  if (span.begin >= span.end) return span;
  if (column[span.begin] <= column[span.end - 1]) {
    const int begin = RunEnd(span.begin, span.end, [&](int x) { return column[x] + row < lowest; });
    return {begin, RunEnd(begin, span.end, [&](int x) { return column[x] + row < limit; })};
  }
  const int begin = RunEnd(span.begin, span.end, [&](int x) { return column[x] + row >= limit; });
  return {begin, RunEnd(begin, span.end, [&](int x) { return column[x] + row >= lowest; })};
}

// One row of the result: nothing outside `touched` sees the pasted plane, and in `inner` it has all four neighbours.
// The bounds are those of floor(source - 0.5), moved to the source itself, where they are exact.
struct RowSpans {
  RowSpans(const Rotation& rotation, const PastedPlane& image, Span columns, int y) {
    const auto within = [&](Span span, float margin) {
      const float left = static_cast<float>(image.left) - margin, top = static_cast<float>(image.top) - margin;
      const float right = static_cast<float>(image.left + image.plane.cols()) + margin;
      const float bottom = static_cast<float>(image.top + image.plane.rows()) + margin;
      const float width = static_cast<float>(rotation.width()), height = static_cast<float>(rotation.height());
      span = Within(span, rotation.columnX(), rotation.RowX(y), std::max(left, 0.0f), std::min(right, width));
      return Within(span, rotation.columnY(), rotation.RowY(y), std::max(top, 0.0f), std::min(bottom, height));
    };
    touched = within(columns, 0.5f);
    inner = within(touched, -0.5f);
  }
  Span touched;
  Span inner;
};

float Interpolated(float p00, float p01, float p10, float p11, float fx, float fy) {
  const float a = p00 + (p01 - p00) * fx;
  const float b = p10 + (p11 - p10) * fx;
  return a + (b - a) * fy;
}

unsigned char SampleAt(const Rotation& rotation, const PastedPlane& image, int x, int y) {
  const float atX = rotation.SourceX(x, y) - 0.5f, atY = rotation.SourceY(x, y) - 0.5f;
  const float floorX = std::floor(atX), floorY = std::floor(atY);
  const auto neighbour = [&](int dy, int dx) {
    const int row = std::clamp(static_cast<int>(floorY) + dy, 0, rotation.height() - 1) - image.top;
    const int column = std::clamp(static_cast<int>(floorX) + dx, 0, rotation.width() - 1) - image.left;
    const bool pasted = row >= 0 && row < image.plane.rows() && column >= 0 && column < image.plane.cols();
    return pasted ? static_cast<float>(image.plane(row, column)) : 0.0f;
  };
  return static_cast<unsigned char>(
      Interpolated(neighbour(0, 0), neighbour(0, 1), neighbour(1, 0), neighbour(1, 1), atX - floorX, atY - floorY));
}

// Columns of the result whose source lines stay in the nearest cache.
constexpr int kBlock = kMostSampled;

}  // namespace

Rotation::Rotation(int width, int height, float degrees)
    : height_(height), columnX_(static_cast<std::size_t>(width)), columnY_(static_cast<std::size_t>(width)) {
  const float angle = -degrees * 3.1415927f / 180.0f;
  sine_ = static_cast<float>(std::sin(static_cast<double>(angle)));
  cosine_ = static_cast<float>(std::cos(static_cast<double>(angle)));
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const int middleX = width / 2, middleY = height / 2;
  const float m0 = -cosine_ * w / 2.0f - sine_ * h / 2.0f + static_cast<float>(middleX);
  const float m1 = sine_ * w / 2.0f - cosine_ * h / 2.0f + static_cast<float>(middleY);
  for (std::size_t x = 0; x < columnX_.size(); ++x) {
    columnX_[x] = m0 + cosine_ * static_cast<float>(x);
    columnY_[x] = m1 - sine_ * static_cast<float>(x);
  }
}

BytePlane RotateImage(const Rotation& rotation, const PastedPlane& image, const Window& window) {
  assert(window.left >= 0 && window.left + window.width <= rotation.width());
  BytePlane result(window.height, window.width);
  std::vector<RowSpans> spans;
  spans.reserve(static_cast<std::size_t>(window.height));
  const Span columns = {window.left, window.left + window.width};
  for (int i = 0; i < window.height; ++i) {
    const int y = window.top + i;
    const RowSpans& row = spans.emplace_back(rotation, image, columns, y);
    unsigned char* const samples = Row(result, i);
    const auto fillBlack = [&](int begin, int end) {
      std::fill(samples + (begin - window.left), samples + (end - window.left), 0);
    };
    const auto interpolate = [&](int begin, int end) {
      for (int x = begin; x < end; ++x) samples[x - window.left] = SampleAt(rotation, image, x, y);
    };
    fillBlack(columns.begin, row.touched.begin);
    interpolate(row.touched.begin, row.inner.begin);
    interpolate(row.inner.end, row.touched.end);
    fillBlack(row.touched.end, columns.end);
  }
  const RotationKernels& kernels = ActiveKernels().rotation;
  const SampledPlane plane = {image.plane.data(), image.plane.cols(), image.top, image.left};
  for (int left = columns.begin; left < columns.end; left += kBlock)
    for (int i = 0; i < window.height; ++i) {
      const Span& inner = spans[static_cast<std::size_t>(i)].inner;
      const int begin = std::max(left, inner.begin), end = std::min(left + kBlock, inner.end), y = window.top + i;
      if (begin < end)
        kernels.sample(plane, rotation.columnX() + begin, rotation.columnY() + begin, rotation.RowX(y),
                       rotation.RowY(y), end - begin, Row(result, i) + (begin - window.left));
    }
  return result;
}

}  // namespace quentara
