#include "imageops/window_definitions.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace quentara {
namespace {

using Samples = std::vector<int>;

template <class Result, class Judge>
Plane<Result> JudgeWindows(Reach reach, const BytePlane& values, const Judge& judge) {
  Plane<Result> result(values.rows(), values.cols());
  Samples window;
  for (int y = 0; y < values.rows(); ++y)
    for (int x = 0; x < values.cols(); ++x) {
      window.clear();
      for (int j = y - reach.rows; j <= y + reach.rows; ++j)
        for (int i = x - reach.columns; i <= x + reach.columns; ++i)
          if (j >= 0 && j < values.rows() && i >= 0 && i < values.cols() &&
              std::abs(j - y) + std::abs(i - x) <= reach.steps)
            window.push_back(values(j, i));
      result(y, x) = static_cast<Result>(judge(y, x, window));
    }
  return result;
}

int OfRank(Samples& samples, std::size_t rank) {
  std::nth_element(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(rank), samples.end());
  return samples[rank];
}

void KeepNear(int centre, int limit, Samples& samples) {
  const auto far = [&](int v) { return std::abs(v - centre) > limit; };
  samples.erase(std::remove_if(samples.begin(), samples.end(), far), samples.end());
}

}  // namespace

Reach Square(int radius) {
  return {radius, radius, 2 * radius};
}

Reach Diamond(int radius) {
  return {radius, radius, radius};
}

Reach Line(int radius, LineDirection direction) {
  return direction == LineDirection::Vertical ? Reach{radius, 0, radius} : Reach{0, radius, radius};
}

BytePlane MedianByDefinition(Reach reach, const BytePlane& plane) {
  const auto nearEdge = [](int position, int radius, int size) {
    return position < radius || position > size - 1 - radius;
  };
  return JudgeWindows<unsigned char>(reach, plane, [&](int y, int x, Samples& window) {
    const bool corner = nearEdge(y, reach.rows, plane.rows()) && nearEdge(x, reach.columns, plane.cols());
    return OfRank(window, corner ? (window.size() - 1) / 2 : window.size() / 2);
  });
}

FloatPlane MedianDeviationByDefinition(Reach reach, const BytePlane& values, const BytePlane& medians) {
  return JudgeWindows<float>(reach, values, [&](int y, int x, const Samples& window) {
    float sum = 0.0f;
    for (const int v : window) sum += static_cast<float>(std::abs(v - medians(y, x)));
    return sum / static_cast<float>(window.size());
  });
}

BytePlane RangeMeanByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows<unsigned char>(reach, values, [&](int y, int x, Samples& window) {
    KeepNear(centre(y, x), limit, window);
    float s = 0.0f, m = 0.0f;
    for (const int v : window) s += static_cast<float>(v), m += 1.0f;
    return static_cast<int>(s / m + 0.5f);
  });
}

BytePlane RangeMedianByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows<unsigned char>(reach, values, [&](int y, int x, Samples& window) {
    KeepNear(centre(y, x), limit, window);
    return OfRank(window, (window.size() - 1) / 2);
  });
}

BytePlane MaxByDefinition(int radius, const BytePlane& plane) {
  return JudgeWindows<unsigned char>(Square(radius), plane, [](int, int, const Samples& window) {
    return *std::max_element(window.begin(), window.end());
  });
}

BytePlane MinByDefinition(int radius, const BytePlane& plane) {
  return JudgeWindows<unsigned char>(Square(radius), plane, [](int, int, const Samples& window) {
    return *std::min_element(window.begin(), window.end());
  });
}

BytePlane BoxMeanByDefinition(int radius, const BytePlane& plane) {
  return JudgeWindows<unsigned char>(Square(radius), plane, [](int, int, const Samples& window) {
    float s = 0.0f;
    for (const int v : window) s += static_cast<float>(v);
    return static_cast<int>(s / static_cast<float>(window.size()) + 0.5f);
  });
}

BytePlane RangeModeByDefinition(int radius, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows<unsigned char>(Square(radius), values, [&](int y, int x, const Samples& window) {
    std::vector<int> frequency(256);
    for (const int v : window) ++frequency[static_cast<std::size_t>(v)];
    int best = 0, mode = -1;
    for (int v = std::max(centre(y, x) - limit, 0); v <= std::min(centre(y, x) + limit, 255); ++v)
      if (frequency[static_cast<std::size_t>(v)] > best) best = frequency[static_cast<std::size_t>(v)], mode = v;
    return mode;
  });
}

}  // namespace quentara
