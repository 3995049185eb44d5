#include "imageops/resample.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_styles.h"

namespace quentara {
namespace {

BytePlane ResampledByDefinition(const BytePlane& plane, int height, int width) {
  const float kx = static_cast<float>(plane.cols()) / static_cast<float>(width);
  const float ky = static_cast<float>(plane.rows()) / static_cast<float>(height);
  const auto at = [&](float y, float x) {
    return static_cast<float>(plane(std::clamp(static_cast<int>(y), 0, plane.rows() - 1),
                                    std::clamp(static_cast<int>(x), 0, plane.cols() - 1)));
  };
  return PlaneOf(height, width, [&](int y, int x) {
    const float sx = kx * static_cast<float>(x) - 0.5f, sy = ky * static_cast<float>(y) - 0.5f;
    const float x0 = std::floor(sx), y0 = std::floor(sy);
    const float a = at(y0, x0) + (at(y0, x0 + 1) - at(y0, x0)) * (sx - x0);
    const float b = at(y0 + 1, x0) + (at(y0 + 1, x0 + 1) - at(y0 + 1, x0)) * (sx - x0);
    return std::clamp(a + (b - a) * (sy - y0), 0.0f, 255.0f);
  });
}

struct Case {
  int height, width, newHeight, newWidth;
};
const Case kCases[] = {{1, 1, 1, 1},     {1, 1, 3, 2},     {1, 9, 1, 12},   {7, 1, 9, 1},
                       {24, 31, 33, 43}, {33, 43, 24, 31}, {40, 40, 7, 90}, {3, 5, 3, 5}};

TEST(ResampleLuma, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.height << "x" << c.width << " to " << c.newHeight << "x" << c.newWidth);
    const BytePlane plane(RandomPlane(c.height, c.width, rng));
    ExpectWithAnyWorkers(ResampledByDefinition(plane, c.newHeight, c.newWidth),
                         [&] { return ResampleLuma(plane, c.newHeight, c.newWidth); });
  }
}

}  // namespace
}  // namespace quentara
