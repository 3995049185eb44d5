#include "imageops/banded_filters.h"

#include <gtest/gtest.h>

#include "imageops/box_mean_filter.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"
#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

struct Case {
  int height, width, radius;
};

// Every method of every filter: its first rows in the middle of a plane, near an edge and at an odd row, its corners in
// one band and in several.
const Case kCases[] = {{67, 150, 0},  {67, 150, 1},  {67, 150, 2}, {67, 33, 3},    {90, 150, 5}, {90, 120, 8},
                       {90, 120, 11}, {120, 90, 14}, {64, 70, 15}, {270, 30, 128}, {1, 40, 2},   {5, 3, 1}};

// fill(rows) asks for some rows from the middle of `whole`.
template <class T, class Fill>
void ExpectSomeRows(const Plane<T>& whole, const Fill& fill) {
  const int first = whole.rows() / 2, count = (whole.rows() - first + 1) / 2;
  Plane<T> some(count, whole.cols());
  fill(ResultRows<T>{some, first});
  EXPECT_EQ("", FirstDifference(WrapRows(whole, first, count), some));
}

TEST(BandedFilters, GiveTheBytesOfOneCallOnEveryInstructionSet) {
  constexpr int kLimit = 20;
  std::mt19937 rng(1);
  for (const auto& [height, width, radius] : kCases) {
    const BytePlane centre(PatchyPlane(height, width, rng)), values(RandomPlaneNear(centre, kLimit, rng));
    for (const WindowKernels* kernels : RunnableKernels()) {
      const KernelScope kernelScope(*kernels);
      const BytePlane median(MedianFilter(radius, values)), mode(ModeFilter(radius, values));
      const BytePlane most(MaxFilter(radius, values)), least(MinFilter(radius, values));
      const BytePlane mean(BoxMeanFilter(radius, values));
      const FloatPlane deviation(MedianDeviationFilter(radius, values, centre));
      const BytePlane rangeMode(RangeModeFilter2(radius, centre, values, kLimit));
      const BytePlane squareMean(RangeMeanFilter2(radius, centre, values, kLimit));
      const BytePlane squareMedian(RangeMedianFilter2(radius, centre, values, kLimit));
      const int r = radius;
      ExpectSomeRows(median, [&](ByteRows rows) { MedianFilter(r, values, rows); });
      ExpectSomeRows(deviation, [&](FloatRows rows) { MedianDeviationFilter(r, values, centre, rows); });
      ExpectSomeRows(most, [&](ByteRows rows) { MaxFilter(r, values, rows); });
      ExpectSomeRows(least, [&](ByteRows rows) { MinFilter(r, values, rows); });
      ExpectSomeRows(mean, [&](ByteRows rows) { BoxMeanFilter(r, values, rows); });
      ExpectSomeRows(mode, [&](ByteRows rows) { ModeFilter(r, values, rows); });
      ExpectSomeRows(squareMean, [&](ByteRows rows) { RangeMeanFilter2(r, centre, values, kLimit, rows); });
      for (const LineDirection direction : {LineDirection::Vertical, LineDirection::Horizontal})
        ExpectSomeRows(RangeMedianLine2(r, centre, values, kLimit, direction),
                       [&](ByteRows rows) { RangeMedianLine2(r, centre, values, kLimit, direction, rows); });
      for (const int workers : {1, 2, 3, 7}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " radius " << radius << " workers " << workers
                                        << " " << kernels->name);
        StandaloneHost host(workers);
        const Plugin::HostScope hostScope(host);
        EXPECT_EQ("", FirstDifference(median, MedianInBands(radius, values)));
        EXPECT_EQ("", FirstDifference(deviation, MedianDeviationInBands(radius, values, centre)));
        EXPECT_EQ("", FirstDifference(most, MaxInBands(radius, values)));
        EXPECT_EQ("", FirstDifference(least, MinInBands(radius, values)));
        EXPECT_EQ("", FirstDifference(mean, BoxMeanInBands(radius, values)));
        EXPECT_EQ("", FirstDifference(mode, ModeInBands(radius, values)));
        EXPECT_EQ("", FirstDifference(rangeMode, RangeModeInBands(radius, centre, values, kLimit)));
        RangePass pass{0, true, radius, kLimit, BandCount(height, radius)};
        EXPECT_EQ("", FirstDifference(squareMean, RangeMeanPass(pass, centre, values)));
        EXPECT_EQ("", FirstDifference(squareMedian, RangeMedianPass(pass, centre, values)));
        pass.square = false;
        for (pass.index = 0; pass.index < 2; ++pass.index) {
          const LineDirection direction = pass.index == 0 ? LineDirection::Vertical : LineDirection::Horizontal;
          EXPECT_EQ("", FirstDifference(RangeMeanLine2(radius, centre, values, kLimit, direction),
                                        RangeMeanPass(pass, centre, values)));
          EXPECT_EQ("", FirstDifference(RangeMedianLine2(radius, centre, values, kLimit, direction),
                                        RangeMedianPass(pass, centre, values)));
        }
      }
    }
  }
}

}  // namespace
}  // namespace quentara
