#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

#include "imageops/box_mean_filter.h"
#include "imageops/diamond_filters.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"
#include "imageops/window_definitions.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

struct Case {
  int height, width, radius;
};

// Every relation of plane and window: single samples, lines, planes smaller than the window, several strips of columns
// and blocks of tiles, and the large radii at which the counters of a column or of a window are at their limits.
std::vector<Case> Cases() {
  std::vector<Case> cases;
  for (const auto& [height, width] :
       {std::pair{1, 1}, {1, 19}, {17, 1}, {2, 2}, {3, 40}, {6, 5}, {33, 40}, {21, 70}, {3, 600}})
    for (int radius = 0; radius <= 9; ++radius) cases.push_back({height, width, radius});
  for (const int radius : {30, 60, 91, 110, 128, 140}) cases.push_back({8, 23, radius});
  cases.insert(cases.end(), {{3, 1400, 1},
                             {7, 475, 3},
                             {18, 340, 8},
                             {38, 45, 10},
                             {38, 75, 11},
                             {38, 45, 17},
                             {61, 66, 30},
                             {5, 600, 60},
                             {258, 5, 127},
                             {270, 3, 140},
                             {5, 230, 110},
                             {4, 250, 86}});
  return cases;
}

// Calls check(case, centre, values, limit) for random and patchy planes, with values within limit of the centre.
void ForPlanes(const std::vector<int>& limits,
               const std::function<void(const Case&, const BytePlane&, const BytePlane&, int)>& check) {
  std::mt19937 rng(1);
  for (const Case& c : Cases())
    for (const int limit : limits)
      for (const bool patchy : {false, true}) {
        SCOPED_TRACE(testing::Message() << c.height << "x" << c.width << " radius " << c.radius << " limit " << limit
                                        << (patchy ? " patchy" : " random"));
        const BytePlane centre(patchy ? PatchyPlane(c.height, c.width, rng) : RandomPlane(c.height, c.width, rng));
        check(c, centre, RandomPlaneNear(centre, limit, rng), limit);
      }
}

const std::vector<int> kLimits = {0, 1, 15, 27, 60, 127, 254, 1000};

TEST(MedianFilter, EqualsItsDefinition) {
  ForPlanes({0}, [](const Case& c, const BytePlane& plane, const BytePlane&, int) {
    EXPECT_EQ("", FirstDifference(MedianByDefinition(Square(c.radius), plane), MedianFilter(c.radius, plane)));
  });
}

TEST(MedianDeviationFilter, EqualsItsDefinitionForAnyReferencePlane) {
  ForPlanes({0, 15, 255}, [](const Case& c, const BytePlane& values, const BytePlane& medians, int) {
    EXPECT_EQ("", FirstDifference(MedianDeviationByDefinition(Square(c.radius), values, medians),
                                  MedianDeviationFilter(c.radius, values, medians)));
  });
}

TEST(RangeMeanFilters, EqualTheirDefinition) {
  ForPlanes(kLimits, [](const Case& c, const BytePlane& centre, const BytePlane& values, int limit) {
    EXPECT_EQ("", FirstDifference(RangeMeanByDefinition(Square(c.radius), centre, values, limit),
                                  RangeMeanFilter2(c.radius, centre, values, limit)));
    EXPECT_EQ("", FirstDifference(RangeMeanFilter2(c.radius, values, values, limit),
                                  RangeMeanFilter(c.radius, values, limit)));
  });
}

TEST(RangeMedianFilter2, EqualsItsDefinition) {
  ForPlanes(kLimits, [](const Case& c, const BytePlane& centre, const BytePlane& values, int limit) {
    EXPECT_EQ("", FirstDifference(RangeMedianByDefinition(Square(c.radius), centre, values, limit),
                                  RangeMedianFilter2(c.radius, centre, values, limit)));
  });
}

TEST(LineFilters, EqualTheirDefinitionsInBothDirections) {
  ForPlanes(kLimits, [](const Case& c, const BytePlane& centre, const BytePlane& values, int limit) {
    for (const LineDirection direction : {LineDirection::Vertical, LineDirection::Horizontal}) {
      SCOPED_TRACE(testing::Message() << "direction " << static_cast<int>(direction));
      const Reach line = Line(c.radius, direction);
      EXPECT_EQ("", FirstDifference(RangeMeanByDefinition(line, centre, values, limit),
                                    RangeMeanLine2(c.radius, centre, values, limit, direction)));
      EXPECT_EQ("", FirstDifference(RangeMeanByDefinition(line, values, values, limit),
                                    RangeMeanLine(c.radius, values, limit, direction)));
      EXPECT_EQ("", FirstDifference(RangeMedianByDefinition(line, centre, values, limit),
                                    RangeMedianLine2(c.radius, centre, values, limit, direction)));
    }
  });
}

TEST(MaxFilter, EqualsItsDefinition) {
  ForPlanes({0}, [](const Case& c, const BytePlane& plane, const BytePlane&, int) {
    EXPECT_EQ("", FirstDifference(MaxByDefinition(c.radius, plane), MaxFilter(c.radius, plane)));
  });
}

// Calls check(filter) for every filter, as a function of two planes.
template <class Check>
void ForFilters(int radius, int limit, const Check& check) {
  using Planes = const BytePlane&;
  check([=](Planes, Planes b) { return MedianFilter(radius, b); });
  check([=](Planes a, Planes b) { return MedianDeviationFilter(radius, b, a); });
  check([=](Planes, Planes b) { return MaxFilter(radius, b); });
  check([=](Planes a, Planes b) { return RangeMeanFilter2(radius, a, b, limit); });
  check([=](Planes a, Planes b) { return RangeMedianFilter2(radius, a, b, limit); });
  for (const LineDirection direction : {LineDirection::Vertical, LineDirection::Horizontal}) {
    check([=](Planes a, Planes b) { return RangeMeanLine2(radius, a, b, limit, direction); });
    check([=](Planes a, Planes b) { return RangeMedianLine2(radius, a, b, limit, direction); });
  }
  check([=](Planes, Planes b) { return MinFilter(radius, b); });
  check([=](Planes, Planes b) { return BoxMeanFilter(radius, b); });
  check([=](Planes, Planes b) { return ModeFilter(radius, b); });
  check([=](Planes a, Planes b) { return RangeModeFilter2(radius, a, b, limit); });
  check([=](Planes, Planes b) { return DiamondMedianFilter(radius, b); });
  check([=](Planes a, Planes b) { return DiamondDeviationFilter(radius, a, b); });
}

// The window of (y, x), of which only the samples within limit of c, in order.
std::vector<unsigned char> SortedWindow(const BytePlane& plane, int y, int x, int radius, int c, int limit) {
  std::vector<unsigned char> window;
  for (int j = std::max(y - radius, 0); j <= std::min(y + radius, plane.rows() - 1); ++j)
    for (int i = std::max(x - radius, 0); i <= std::min(x + radius, plane.cols() - 1); ++i)
      if (std::abs(plane(j, i) - c) <= limit) window.push_back(plane(j, i));
  std::sort(window.begin(), window.end());
  return window;
}

// Of the most frequent values, the lowest.
unsigned char ModeOf(const std::vector<unsigned char>& sorted) {
  int counts[256] = {};
  for (const unsigned char value : sorted) ++counts[value];
  return static_cast<unsigned char>(std::max_element(counts, counts + 256) - counts);
}

float MeanDistance(const std::vector<unsigned char>& values, int from) {
  int sum = 0;
  for (const unsigned char value : values) sum += std::abs(value - from);
  return static_cast<float>(sum) / static_cast<float>(values.size());
}

// Counters above 32767 look negative to some vector instructions; whole planes would take the definitions too long.
TEST(HistogramFilters, TakeWindowsOfMoreThan32767Samples) {
  constexpr int kHeight = 250, kWidth = 262, kRadius = 127;
  std::mt19937 rng(7);
  const BytePlane random(RandomPlane(kHeight, kWidth, rng)), nearlyFlat(RandomPlane(kHeight, kWidth, rng, 118, 121));
  BytePlane flat(kHeight, kWidth);
  flat = 119;
  for (const WindowKernels* kernels : RunnableKernels()) {
    const KernelScope scope(*kernels);
    for (const BytePlane* plane : std::initializer_list<const BytePlane*>{&random, &nearlyFlat, &flat}) {
      const BytePlane median(MedianFilter(kRadius, *plane)), mode(ModeFilter(kRadius, *plane));
      for (const int limit : {0, 1, 20, 255}) {
        const BytePlane ranged(RangeMedianFilter2(kRadius, *plane, *plane, limit));
        const BytePlane rangedMode(RangeModeFilter2(kRadius, *plane, *plane, limit));
        const BytePlane rangedMean(RangeMeanFilter2(kRadius, *plane, *plane, limit));
        const FloatPlane deviation(MedianDeviationFilter(kRadius, *plane, rangedMean));
        for (int n = 0; n < 12; ++n) {
          const int y = static_cast<int>(rng() % kHeight), x = 128 + static_cast<int>(rng() % 6), c = (*plane)(y, x);
          const auto all = SortedWindow(*plane, y, x, kRadius, 0, 255);
          EXPECT_EQ(all[all.size() / 2], median(y, x)) << kernels->name << " " << y << ", " << x;
          EXPECT_EQ(ModeOf(all), mode(y, x)) << kernels->name << " " << y << ", " << x;
          const auto near = SortedWindow(*plane, y, x, kRadius, c, limit);
          EXPECT_EQ(near[(near.size() - 1) / 2], ranged(y, x)) << kernels->name << " limit " << limit << " " << y;
          EXPECT_EQ(ModeOf(near), rangedMode(y, x)) << kernels->name << " limit " << limit << " " << y;
          EXPECT_EQ(ToByte(MeanDistance(near, 0)), rangedMean(y, x)) << kernels->name << " limit " << limit;
          EXPECT_EQ(MeanDistance(all, rangedMean(y, x)), deviation(y, x)) << kernels->name << " limit " << limit;
        }
      }
    }
  }
}

TEST(WindowFilters, DoNotDependOnTheWorkers) {
  std::mt19937 rng(2);
  const BytePlane centre(PatchyPlane(67, 33, rng)), values(RandomPlaneNear(centre, 20, rng));
  for (const int radius : {0, 1, 3, 8})
    for (const int workers : {1, 2, 3, 7}) {
      SCOPED_TRACE(testing::Message() << "radius " << radius << " workers " << workers);
      StandaloneHost host(workers);
      const Plugin::HostScope scope(host);
      ForFilters(radius, 20, [&](const auto& filter) {
        EXPECT_EQ("", FirstDifference(filter(centre, values), FilterInBands(radius, filter, centre, values)));
      });
    }
}

TEST(WindowFilters, GiveTheSameBytesOnEveryInstructionSet) {
  ForPlanes({20, 70, 254}, [](const Case& c, const BytePlane& centre, const BytePlane& values, int limit) {
    ForFilters(c.radius, limit, [&](const auto& filter) {
      const auto expected = filter(centre, values);
      for (const WindowKernels* kernels : RunnableKernels()) {
        SCOPED_TRACE(kernels->name);
        const KernelScope scope(*kernels);
        EXPECT_EQ("", FirstDifference(expected, filter(centre, values)));
      }
    });
  });
}

}  // namespace
}  // namespace quentara
