#include "outlines/rotate_image.h"

#include <gtest/gtest.h>

#include <cmath>

#include "imageops/window_kernels_dispatch.h"
#include "support/planes.h"

namespace quentara {
namespace {

// The whole rotated image, from one that holds the pasted plane and black around it.
BytePlane RotatedByDefinition(const BytePlane& image, float degrees, int rows) {
  const int height = image.rows(), width = image.cols();
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  const float angle = -degrees * 3.1415927f / 180.0f;
  const float s = static_cast<float>(std::sin(static_cast<double>(angle)));
  const float c = static_cast<float>(std::cos(static_cast<double>(angle)));
  const float m0 = -c * w / 2.0f - s * h / 2.0f + static_cast<float>(width / 2);
  const float m1 = s * w / 2.0f - c * h / 2.0f + static_cast<float>(height / 2);
  BytePlane rotated(rows, width);
  rotated = 0;
  for (int y = 0; y < rows; ++y)
    for (int x = 0; x < width; ++x) {
      const float sx = m0 + c * static_cast<float>(x) + s * static_cast<float>(y);
      const float sy = m1 - s * static_cast<float>(x) + c * static_cast<float>(y);
      if (sx < 0.0f || sy < 0.0f || sx >= w || sy >= h) continue;
      const float px = sx - 0.5f, py = sy - 0.5f;
      const float x0 = std::floor(px), y0 = std::floor(py);
      const auto p = [&](int dy, int dx) {
        return static_cast<float>(image(std::clamp(static_cast<int>(y0) + dy, 0, height - 1),
                                        std::clamp(static_cast<int>(x0) + dx, 0, width - 1)));
      };
      const float a = p(0, 0) + (p(0, 1) - p(0, 0)) * (px - x0);
      const float b = y0 + 1.0f >= h ? a : p(1, 0) + (p(1, 1) - p(1, 0)) * (px - x0);
      rotated(y, x) = static_cast<unsigned char>(std::clamp(a + (b - a) * (py - y0), 0.0f, 255.0f));
    }
  return rotated;
}

BytePlane Cut(const BytePlane& plane, const Window& window) {
  BytePlane part(window.height, window.width);
  for (int y = 0; y < window.height; ++y)
    for (int x = 0; x < window.width; ++x) part(y, x) = plane(window.top + y, window.left + x);
  return part;
}

TEST(RotateImage, TakesThePastedPlaneForTheWholeImage) {
  std::mt19937 rng(12);
  for (int run = 0; run < 60; ++run) {
    const auto below = [&](int limit) { return static_cast<int>(rng() % static_cast<unsigned>(limit)); };
    const int height = 3 + below(40), width = 3 + below(40);
    const BytePlane plane(RandomPlane(1 + below(height), 1 + below(width), rng, 1));
    const int top = below(height - plane.rows() + 1), left = below(width - plane.cols() + 1);
    BytePlane image(height, width);
    image = 0;
    image(blitz::Range(top, top + plane.rows() - 1), blitz::Range(left, left + plane.cols() - 1)) = plane;
    Window window = {below(height), below(width), 0, 0};
    window.height = 1 + below(height - window.top), window.width = 1 + below(width - window.left);
    for (const float degrees : {0.0f, 45.0f, -45.0f, 90.0f, -170.0f, 13.7f}) {
      const Rotation rotation(width, height, degrees);
      const BytePlane expected(Cut(RotatedByDefinition(image, degrees, height), window));
      for (const WindowKernels* kernels : RunnableKernels()) {
        const KernelScope scope(*kernels);
        EXPECT_EQ("", FirstDifference(expected, RotateImage(rotation, {plane, top, left}, window)))
            << kernels->name << " run " << run << " by " << degrees;
      }
    }
  }
}

}  // namespace
}  // namespace quentara
