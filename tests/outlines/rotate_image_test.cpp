#include "outlines/rotate_image.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_styles.h"

namespace quentara {
namespace {

BytePlane RotatedByDefinition(int height, int width, float degrees, const PastedPlane& pasted, const Window& window) {
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const float angle = -degrees * 3.1415927f / 180.0f;
  const float s = static_cast<float>(std::sin(static_cast<double>(angle)));
  const float c = static_cast<float>(std::cos(static_cast<double>(angle)));
  const float m0 = -c * w / 2.0f - s * h / 2.0f + static_cast<float>(width / 2);
  const float m1 = s * w / 2.0f - c * h / 2.0f + static_cast<float>(height / 2);
  const auto p = [&](int y, int x) {  // of the image, black around the pasted plane
    y = std::clamp(y, 0, height - 1) - pasted.top, x = std::clamp(x, 0, width - 1) - pasted.left;
    const bool inside = y >= 0 && y < pasted.plane.rows() && x >= 0 && x < pasted.plane.cols();
    return inside ? static_cast<float>(pasted.plane(y, x)) : 0.0f;
  };
  return PlaneOf(window.height, window.width, [&](int row, int column) {
    const float y = static_cast<float>(window.top + row), x = static_cast<float>(window.left + column);
    const float sx = m0 + c * x + s * y, sy = m1 - s * x + c * y;
    if (sx < 0.0f || sy < 0.0f || sx >= w || sy >= h) return 0.0f;
    const float px = sx - 0.5f, py = sy - 0.5f, fx = px - std::floor(px), fy = py - std::floor(py);
    const int i = static_cast<int>(std::floor(px)), j = static_cast<int>(std::floor(py));
    const float a = p(j, i) + (p(j, i + 1) - p(j, i)) * fx, b = p(j + 1, i) + (p(j + 1, i + 1) - p(j + 1, i)) * fx;
    return a + (b - a) * fy;
  });
}

TEST(RotateImage, TakesThePastedPlaneForTheWholeImage) {
  std::mt19937 rng(12);
  const auto below = [&](int limit) { return static_cast<int>(rng() % static_cast<unsigned>(limit)); };
  for (int run = 0; run < 60; ++run) {
    const int height = 3 + below(40), width = 3 + below(40);
    const BytePlane plane(RandomPlane(1 + below(height), 1 + below(width), rng, 1));
    const PastedPlane pasted = {plane, below(height - plane.rows() + 1), below(width - plane.cols() + 1)};
    Window window = {below(height), below(width), 0, 0};
    window.height = 1 + below(height - window.top), window.width = 1 + below(width - window.left);
    for (const float degrees : {0.0f, 45.0f, -45.0f, 90.0f, -170.0f, 13.7f}) {
      SCOPED_TRACE(testing::Message() << "run " << run << " by " << degrees);
      const BytePlane expected(RotatedByDefinition(height, width, degrees, pasted, window));
      ForInstructionSets([&] {
        EXPECT_EQ("", FirstDifference(expected, RotateImage(Rotation(width, height, degrees), pasted, window)));
      });
    }
  }
}

}  // namespace
}  // namespace quentara
