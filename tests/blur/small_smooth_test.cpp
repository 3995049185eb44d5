#include "blur/small_smooth.h"

#include <gtest/gtest.h>

#include "support/planes.h"

namespace quentara {
namespace {

struct Taps {
  float centre, innerSum, edgeSum;
};
constexpr Taps kBinomial = {2.0f, 4.0f, 3.0f};
constexpr Taps kBox = {1.0f, 3.0f, 2.0f};

// Whole planes step by step, each step reading what the one before left.
FloatPlane PassByDefinition(const Taps& taps, const FloatPlane& plane) {
  const int height = plane.rows(), width = plane.cols();
  const auto inner = [&](float a, float b, float c) { return (a + taps.centre * b + c) / taps.innerSum; };
  const auto edge = [&](float e, float n) { return (n + taps.centre * e) / taps.edgeSum; };
  const FloatPlane down(PlaneOf<float>(height, width, [&](int y, int x) {
    return y > 0 && y < height - 1 ? inner(plane(y - 1, x), plane(y, x), plane(y + 1, x)) : plane(y, x);
  }));
  const FloatPlane across(PlaneOf<float>(height, width, [&](int y, int x) {
    return x > 0 && x < width - 1 ? inner(down(y, x - 1), down(y, x), down(y, x + 1)) : down(y, x);
  }));
  return PlaneOf<float>(height, width, [&](int y, int x) {
    if (width > 1 && (x == 0 || x == width - 1)) return edge(across(y, x), across(y, x == 0 ? 1 : width - 2));
    if (height > 1 && (y == 0 || y == height - 1)) return edge(across(y, x), across(y == 0 ? 1 : height - 2, x));
    return across(y, x);
  });
}

FloatPlane ByDefinition(const Taps& taps, int passes, const BytePlane& plane) {
  FloatPlane result(blitz::cast<float>(plane));
  for (int i = 0; i < passes; ++i) result.reference(PassByDefinition(taps, result));
  return result;
}

TEST(SmallSmooth, EqualsItsDefinitionOnPlanesOfAnySize) {
  std::mt19937 rng(1);
  for (const auto& [height, width] :
       {std::pair{1, 1}, {1, 9}, {9, 1}, {2, 2}, {2, 7}, {7, 2}, {3, 3}, {19, 26}, {101, 4}})
    for (const int passes : {0, 1, 2, 7}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " passes " << passes);
      const BytePlane plane(RandomPlane(height, width, rng));
      EXPECT_EQ("", FirstDifference(EachPixel(ToByte, ByDefinition(kBinomial, passes, plane)),
                                    BinomialSmooth(passes, plane)));
      const FloatPlane box(ByDefinition(kBox, passes, plane));
      EXPECT_EQ("", FirstDifference(EachPixel(ToByte, box), BoxSmooth3(passes, plane)));
      EXPECT_EQ("", FirstDifference(box, BoxSmooth3Float(passes, ByDefinition(kBox, 0, plane))));
    }
}

}  // namespace
}  // namespace quentara
