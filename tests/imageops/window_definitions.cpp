#include "imageops/window_definitions.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "support/planes.h"

namespace quentara {
namespace {

using Samples = std::vector<unsigned char>;

// A plane of judge(y, x, window).
template <class Result = unsigned char, class Judge>
Plane<Result> JudgeWindows(Reach reach, const BytePlane& values, const Judge& judge) {
  const int lastRow = values.rows() - 1, lastColumn = values.cols() - 1;
  Samples window;
  return PlaneOf<Result>(lastRow / reach.every + 1, lastColumn / reach.every + 1, [&](int row, int column) {
    const int y = row * reach.every, x = column * reach.every;
    window.clear();
    for (int j = std::max(y - reach.rows, 0); j <= std::min(y + reach.rows, lastRow); ++j) {
      const int columns = std::min(reach.columns, reach.steps - std::abs(j - y));
      const unsigned char* const samples = Row(values, j);
      window.insert(window.end(), samples + std::max(x - columns, 0), samples + std::min(x + columns, lastColumn) + 1);
    }
    return judge(y, x, window);
  });
}

unsigned char OfRank(Samples& samples, std::size_t rank) {
  std::nth_element(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(rank), samples.end());
  return samples[rank];
}

void KeepNear(int centre, int limit, Samples& samples) {
  const auto far = [&](int v) { return std::abs(v - centre) > limit; };
  samples.erase(std::remove_if(samples.begin(), samples.end(), far), samples.end());
}

}  // namespace

Reach Square(int radius, int every) {
  return {radius, radius, 2 * radius, every};
}

Reach Diamond(int radius, int every) {
  return {radius, radius, radius, every};
}

Reach Line(int radius, LineDirection direction) {
  return direction == LineDirection::Vertical ? Reach{radius, 0, radius} : Reach{0, radius, radius};
}

BytePlane MedianByDefinition(Reach reach, const BytePlane& plane) {
  const auto nearEdge = [](int position, int radius, int size) {
    return position < radius || position > size - 1 - radius;
  };
  return JudgeWindows(reach, plane, [&](int y, int x, Samples& window) {
    const bool corner = nearEdge(y, reach.rows, plane.rows()) && nearEdge(x, reach.columns, plane.cols());
    return OfRank(window, corner ? (window.size() - 1) / 2 : window.size() / 2);
  });
}

FloatPlane MedianDeviationByDefinition(Reach reach, const BytePlane& values, const BytePlane& medians) {
  return JudgeWindows<float>(reach, values, [&](int y, int x, const Samples& window) {
    const auto distance = [&](float sum, int v) { return sum + static_cast<float>(std::abs(v - medians(y, x))); };
    return std::accumulate(window.begin(), window.end(), 0.0f, distance) / static_cast<float>(window.size());
  });
}

BytePlane RangeMeanByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows(reach, values, [&](int y, int x, Samples& window) {
    KeepNear(centre(y, x), limit, window);
    return std::accumulate(window.begin(), window.end(), 0.0f) / static_cast<float>(window.size()) + 0.5f;
  });
}

BytePlane RangeMedianByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows(reach, values, [&](int y, int x, Samples& window) {
    KeepNear(centre(y, x), limit, window);
    return OfRank(window, (window.size() - 1) / 2);
  });
}

BytePlane RangeModeByDefinition(Reach reach, const BytePlane& centre, const BytePlane& values, int limit) {
  return JudgeWindows(reach, values, [&](int y, int x, Samples& window) {
    KeepNear(centre(y, x), limit, window);
    int frequency[256] = {};
    for (const unsigned char v : window) ++frequency[v];
    return std::max_element(frequency, frequency + 256) - frequency;  // the lowest of the most frequent
  });
}

BytePlane MaxByDefinition(Reach reach, const BytePlane& plane) {
  return JudgeWindows(reach, plane, [](int, int, Samples& window) { return OfRank(window, window.size() - 1); });
}

BytePlane MinByDefinition(Reach reach, const BytePlane& plane) {
  return JudgeWindows(reach, plane, [](int, int, Samples& window) { return OfRank(window, 0); });
}

}  // namespace quentara
