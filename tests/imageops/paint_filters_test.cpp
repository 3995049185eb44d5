#include <gtest/gtest.h>

#include "imageops/box_mean_filter.h"
#include "imageops/diamond_filters.h"
#include "imageops/max_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/window_definitions.h"
#include "support/planes.h"

namespace quentara {
namespace {

// Calls check(radius, plane) for planes larger and smaller than the window and the vectors, patchy and random.
template <class Check>
void ForPlanes(const Check& check) {
  std::mt19937 rng(1);
  for (const auto& [height, width, radius] :
       {std::array{1, 1, 0}, {1, 1, 3},    {1, 19, 2},   {17, 1, 4},  {2, 2, 1},     {3, 40, 2},   {6, 5, 8},
        {33, 40, 0},         {33, 40, 1},  {33, 40, 2},  {24, 50, 3}, {24, 50, 4},   {33, 40, 5},  {34, 70, 11},
        {34, 75, 1},         {50, 36, 2},  {38, 39, 3},  {41, 70, 4}, {75, 42, 5},   {44, 61, 6},  {46, 77, 7},
        {61, 66, 25},        {40, 90, 35}, {5, 600, 14}, {8, 23, 60}, {2, 530, 127}, {270, 2, 140}})
    for (const bool patchy : {false, true}) {
      SCOPED_TRACE(testing::Message() << height << "x" << width << " radius " << radius << (patchy ? " patchy" : ""));
      check(radius, patchy ? PatchyPlane(height, width, rng) : RandomPlane(height, width, rng));
    }
}

TEST(PaintFilters, EqualTheirDefinitions) {
  ForPlanes([](int radius, const BytePlane& plane) {
    EXPECT_EQ("", FirstDifference(MinByDefinition(radius, plane), MinFilter(radius, plane)));
    EXPECT_EQ("", FirstDifference(BoxMeanByDefinition(radius, plane), BoxMeanFilter(radius, plane)));
    EXPECT_EQ("", FirstDifference(RangeModeByDefinition(radius, plane, plane, 255), ModeFilter(radius, plane)));
    EXPECT_EQ("", FirstDifference(MedianByDefinition(Diamond(radius), plane), DiamondMedianFilter(radius, plane)));
  });
}

TEST(PaintFilters, EqualTheirDefinitionsForAnyReferencePlane) {
  std::mt19937 rng(2);
  ForPlanes([&](int radius, const BytePlane& centre) {
    for (const int limit : {0, 12, 255}) {
      const BytePlane values(RandomPlaneNear(centre, limit, rng));
      EXPECT_EQ("", FirstDifference(RangeModeByDefinition(radius, centre, values, limit),
                                    RangeModeFilter2(radius, centre, values, limit)));
      EXPECT_EQ("", FirstDifference(MedianDeviationByDefinition(Diamond(radius), values, centre),
                                    DiamondDeviationFilter(radius, values, centre)));
    }
  });
}

}  // namespace
}  // namespace quentara
