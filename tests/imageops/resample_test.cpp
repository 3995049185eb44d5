#include "imageops/resample.h"

#include <gtest/gtest.h>

#include <cmath>

#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

BytePlane ResampledByDefinition(const BytePlane& plane, int height, int width) {
  const float kx = static_cast<float>(plane.cols()) / static_cast<float>(width);
  const float ky = static_cast<float>(plane.rows()) / static_cast<float>(height);
  const auto at = [&](float y, float x) {
    return static_cast<float>(plane(std::clamp(static_cast<int>(y), 0, plane.rows() - 1),
                                    std::clamp(static_cast<int>(x), 0, plane.cols() - 1)));
  };
  BytePlane result(height, width);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const float sx = kx * static_cast<float>(x) - 0.5f, sy = ky * static_cast<float>(y) - 0.5f;
      const float x0 = std::floor(sx), y0 = std::floor(sy);
      const float a = at(y0, x0) + (at(y0, x0 + 1) - at(y0, x0)) * (sx - x0);
      const float b = at(y0 + 1, x0) + (at(y0 + 1, x0 + 1) - at(y0 + 1, x0)) * (sx - x0);
      result(y, x) = static_cast<unsigned char>(std::min(std::max(a + (b - a) * (sy - y0), 0.0f), 255.0f));
    }
  return result;
}

TEST(ResampleLuma, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width, newHeight, newWidth] : {std::array{1, 1, 1, 1},
                                                           {1, 1, 3, 2},
                                                           {1, 9, 1, 12},
                                                           {7, 1, 9, 1},
                                                           {24, 31, 33, 43},
                                                           {33, 43, 24, 31},
                                                           {40, 40, 7, 90},
                                                           {3, 5, 3, 5}})
    for (const int workers : {1, 2, 7}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " to " << newHeight << "x" << newWidth);
      StandaloneHost host(workers);
      const Plugin::HostScope scope(host);
      const BytePlane plane(RandomPlane(height, width, rng));
      EXPECT_EQ("", FirstDifference(ResampledByDefinition(plane, newHeight, newWidth),
                                    ResampleLuma(plane, newHeight, newWidth)));
    }
}

}  // namespace
}  // namespace quentara
