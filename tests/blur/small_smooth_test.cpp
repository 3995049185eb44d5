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
  FloatPlane down(plane.copy());
  for (int y = 1; y < height - 1; ++y)
    for (int x = 0; x < width; ++x) down(y, x) = inner(plane(y - 1, x), plane(y, x), plane(y + 1, x));
  FloatPlane across(down.copy());
  for (int y = 0; y < height; ++y)
    for (int x = 1; x < width - 1; ++x) across(y, x) = inner(down(y, x - 1), down(y, x), down(y, x + 1));
  FloatPlane edges(across.copy());
  for (int x = 0; x < width && height > 1; ++x) {
    edges(0, x) = edge(across(0, x), across(1, x));
    edges(height - 1, x) = edge(across(height - 1, x), across(height - 2, x));
  }
  for (int y = 0; y < height && width > 1; ++y) {
    edges(y, 0) = edge(across(y, 0), across(y, 1));
    edges(y, width - 1) = edge(across(y, width - 1), across(y, width - 2));
  }
  return edges;
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
