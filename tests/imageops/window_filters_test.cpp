#include <gtest/gtest.h>

#include "imageops/banded_filters.h"
#include "imageops/box_mean_filter.h"
#include "imageops/diamond_filters.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"
#include "imageops/window_definitions.h"
#include "render/bands.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

constexpr LineDirection kDirections[] = {LineDirection::Vertical, LineDirection::Horizontal};

struct Case {
  int height, width, radius;
};

// Every relation of plane and window: single samples, lines, planes smaller than the window, several strips of columns
// and blocks of tiles, and the large radii at which the counters of a column or of a window are at their limits.
const Case kCases[] = {{3, 1400, 1},  {7, 475, 3},   {18, 340, 8}, {75, 42, 5},   {46, 77, 7},   {38, 45, 10},
                       {38, 75, 11},  {38, 45, 17},  {61, 66, 30}, {40, 90, 35},  {5, 600, 14},  {5, 600, 60},
                       {258, 5, 127}, {5, 230, 110}, {4, 250, 86}, {270, 3, 140}, {8, 23, 30},   {8, 23, 60},
                       {8, 23, 91},   {8, 23, 110},  {8, 23, 128}, {8, 23, 140},  {2, 530, 127}, {50, 36, 2}};

// Calls check(radius, limit, centre, values) for random and patchy planes, with values within limit of the centre.
template <class Check>
void ForPlanes(std::initializer_list<int> limits, const Check& check) {
  std::vector<Case> cases(std::begin(kCases), std::end(kCases));
  for (const auto& [height, width] :
       {std::pair{1, 1}, {1, 19}, {17, 1}, {2, 2}, {3, 40}, {6, 5}, {33, 40}, {21, 70}, {3, 600}})
    for (int radius = 0; radius <= 9; ++radius) cases.push_back({height, width, radius});
  std::mt19937 rng(1);
  for (const auto& [height, width, radius] : cases)
    for (const int limit : limits)
      for (const bool patchy : {false, true}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " radius " << radius << " limit " << limit
                                        << (patchy ? " patchy" : " random"));
        const BytePlane centre(patchy ? PatchyPlane(height, width, rng) : RandomPlane(height, width, rng));
        check(radius, limit, centre, RandomPlaneNear(centre, limit, rng));
      }
}

// Expects filter() to be as the definition says on every instruction set, at every so many'th row and column.
template <class T, class Filter>
void Expect(int every, const Plane<T>& definition, const Filter& filter) {
  ForInstructionSets([&] {
    const Plane<T> result(filter());
    const auto chosen = [&](int size) { return blitz::Range(0, size - 1, every); };
    EXPECT_EQ("", FirstDifference(definition, Plane<T>(result(chosen(result.rows()), chosen(result.cols())))));
  });
}

void ExpectFilters(int every, int r, const BytePlane& plane) {
  const Reach square = Square(r, every), diamond = Diamond(r, every);
  Expect(every, MedianByDefinition(square, plane), [&] { return MedianFilter(r, plane); });
  Expect(every, MedianByDefinition(diamond, plane), [&] { return DiamondMedianFilter(r, plane); });
  Expect(every, MaxByDefinition(square, plane), [&] { return MaxFilter(r, plane); });
  Expect(every, MinByDefinition(square, plane), [&] { return MinFilter(r, plane); });
  Expect(every, RangeMeanByDefinition(square, plane, plane, 255), [&] { return BoxMeanFilter(r, plane); });
  Expect(every, RangeModeByDefinition(square, plane, plane, 255), [&] { return ModeFilter(r, plane); });
}

void ExpectRangeFilters(int every, int r, int limit, const BytePlane& c, const BytePlane& v) {
  const Reach square = Square(r, every), diamond = Diamond(r, every);
  Expect(every, MedianDeviationByDefinition(square, v, c), [&] { return MedianDeviationFilter(r, v, c); });
  Expect(every, MedianDeviationByDefinition(diamond, v, c), [&] { return DiamondDeviationFilter(r, v, c); });
  Expect(every, RangeMeanByDefinition(square, c, v, limit), [&] { return RangeMeanFilter2(r, c, v, limit); });
  Expect(every, RangeMedianByDefinition(square, c, v, limit), [&] { return RangeMedianFilter2(r, c, v, limit); });
  Expect(every, RangeModeByDefinition(square, c, v, limit), [&] { return RangeModeFilter2(r, c, v, limit); });
}

TEST(WindowFilters, EqualTheirDefinitions) {
  ForPlanes({0}, [](int r, int, const BytePlane& plane, const BytePlane&) { ExpectFilters(1, r, plane); });
}

TEST(RangeFilters, EqualTheirDefinitions) {
  ForPlanes({0, 1, 15, 27, 60, 127, 254, 1000}, [](int r, int limit, const BytePlane& c, const BytePlane& v) {
    ExpectRangeFilters(1, r, limit, c, v);
    EXPECT_EQ("", FirstDifference(RangeMeanFilter2(r, v, v, limit), RangeMeanFilter(r, v, limit)));
    for (const LineDirection to : kDirections) {
      const Reach line = Line(r, to);
      Expect(1, RangeMeanByDefinition(line, c, v, limit), [&] { return RangeMeanLine2(r, c, v, limit, to); });
      Expect(1, RangeMeanByDefinition(line, v, v, limit), [&] { return RangeMeanLine(r, v, limit, to); });
      Expect(1, RangeMedianByDefinition(line, c, v, limit), [&] { return RangeMedianLine2(r, c, v, limit, to); });
    }
  });
}

// Counters above 32767 look negative to some vector instructions.
TEST(WindowFilters, TakeWindowsOfMoreThan32767Samples) {
  std::mt19937 rng(7);
  for (const auto& [lowest, highest] : {std::pair{0, 255}, {118, 121}, {119, 119}}) {
    const BytePlane plane(RandomPlane(250, 262, rng, lowest, highest));
    ExpectFilters(62, 126, plane);
    for (const int limit : {0, 1, 20, 255}) ExpectRangeFilters(62, 126, limit, plane, plane);
  }
}

// Expects fill(rows) to give some rows from the middle of `whole`.
template <class T, class Fill>
void ExpectRows(const Plane<T>& whole, const Fill& fill) {
  const int first = whole.rows() / 2, count = (whole.rows() - first + 1) / 2;
  Plane<T> some(count, whole.cols());
  fill(ResultRows<T>{some, first});
  EXPECT_EQ("", FirstDifference(WrapRows(whole, first, count), some));
}

// Every method of every filter: its first rows in the middle of a plane, near an edge and at an odd row, its corners in
// one band and in several.
const Case kBandedCases[] = {{67, 150, 0},  {67, 150, 1},  {67, 150, 2}, {67, 33, 3},    {90, 150, 5}, {90, 120, 8},
                             {90, 120, 11}, {120, 90, 14}, {64, 70, 15}, {270, 30, 128}, {1, 40, 2},   {5, 3, 1}};

TEST(BandedFilters, GiveTheBytesOfOneCallOnEveryInstructionSet) {
  constexpr int kLimit = 20;
  std::mt19937 rng(1);
  for (const auto& [height, width, radius] : kBandedCases) {
    const int r = radius;
    const BytePlane c(PatchyPlane(height, width, rng)), v(RandomPlaneNear(c, kLimit, rng));
    const auto pass = [&](int index, bool square) {
      return RangePass{index, square, r, kLimit, BandCount(v.rows(), r)};
    };
    SCOPED_TRACE(testing::Message() << height << "x" << width << " radius " << r);
    ForInstructionSets([&] {
      ExpectWithAnyWorkers(MedianFilter(r, v), [&] { return MedianInBands(r, v); });
      ExpectWithAnyWorkers(MedianDeviationFilter(r, v, c), [&] { return MedianDeviationInBands(r, v, c); });
      ExpectWithAnyWorkers(MaxFilter(r, v), [&] { return MaxInBands(r, v); });
      ExpectWithAnyWorkers(MinFilter(r, v), [&] { return MinInBands(r, v); });
      ExpectWithAnyWorkers(BoxMeanFilter(r, v), [&] { return BoxMeanInBands(r, v); });
      ExpectWithAnyWorkers(ModeFilter(r, v), [&] { return ModeInBands(r, v); });
      ExpectWithAnyWorkers(RangeModeFilter2(r, c, v, kLimit), [&] { return RangeModeInBands(r, c, v, kLimit); });
      ExpectWithAnyWorkers(RangeMeanFilter2(r, c, v, kLimit), [&] { return RangeMeanPass(pass(0, true), c, v); });
      ExpectWithAnyWorkers(RangeMedianFilter2(r, c, v, kLimit), [&] { return RangeMedianPass(pass(0, true), c, v); });
      ExpectRows(MedianFilter(r, v), [&](ByteRows rows) { MedianFilter(r, v, rows); });
      ExpectRows(MedianDeviationFilter(r, v, c), [&](FloatRows rows) { MedianDeviationFilter(r, v, c, rows); });
      ExpectRows(MaxFilter(r, v), [&](ByteRows rows) { MaxFilter(r, v, rows); });
      ExpectRows(MinFilter(r, v), [&](ByteRows rows) { MinFilter(r, v, rows); });
      ExpectRows(BoxMeanFilter(r, v), [&](ByteRows rows) { BoxMeanFilter(r, v, rows); });
      ExpectRows(ModeFilter(r, v), [&](ByteRows rows) { ModeFilter(r, v, rows); });
      ExpectRows(RangeMeanFilter2(r, c, v, kLimit), [&](ByteRows rows) { RangeMeanFilter2(r, c, v, kLimit, rows); });
      for (const int i : {0, 1}) {
        const LineDirection to = kDirections[i];
        const BytePlane means(RangeMeanLine2(r, c, v, kLimit, to)), medians(RangeMedianLine2(r, c, v, kLimit, to));
        ExpectWithAnyWorkers(means, [&] { return RangeMeanPass(pass(i, false), c, v); });
        ExpectWithAnyWorkers(medians, [&] { return RangeMedianPass(pass(i, false), c, v); });
        ExpectRows(medians, [&](ByteRows rows) { RangeMedianLine2(r, c, v, kLimit, to, rows); });
      }
    });
  }
}

}  // namespace
}  // namespace quentara
