#include "render/bands.h"

#include <gtest/gtest.h>

#include <new>

#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

// Reaches exactly `radius` rows, and its clipped edge differs from its interior.
IntPlane ColumnSums(int radius, const BytePlane& plane) {
  IntPlane sums(plane.rows(), plane.cols());
  sums = 0;
  for (int y = 0; y < plane.rows(); ++y)
    for (int j = std::max(y - radius, 0); j <= std::min(y + radius, plane.rows() - 1); ++j)
      for (int x = 0; x < plane.cols(); ++x) sums(y, x) += plane(j, x);
  return sums;
}

TEST(BandCount, KeepsBandsTallerThanTwiceTheRadius) {
  StandaloneHost host(7);
  const Plugin::HostScope scope(host);
  EXPECT_EQ(7, BandCount(70, 4));
  EXPECT_EQ(6, BandCount(70, 5));
  EXPECT_EQ(1, BandCount(70, 100));
  EXPECT_EQ(1, BandCount(1, 0));
}

TEST(FilterInBands, DoesNotDependOnTheWorkers) {
  std::mt19937 rng(1);
  for (const int height : {1, 2, 9, 40, 41})
    for (const int radius : {0, 1, 2, 5})
      for (const int workers : {1, 2, 3, 7}) {
        SCOPED_TRACE(testing::Message() << height << " rows, radius " << radius << ", workers " << workers);
        const BytePlane plane(RandomPlane(height, 5, rng));
        const IntPlane whole(ColumnSums(radius, plane));
        StandaloneHost host(workers);
        const Plugin::HostScope scope(host);
        EXPECT_EQ("", FirstDifference(
                          whole, FilterInBands(
                                     radius, [&](const BytePlane& band) { return ColumnSums(radius, band); }, plane)));
      }
}

TEST(FilterInBands, PassesAWorkersExceptionOn) {
  StandaloneHost host(3);
  const Plugin::HostScope scope(host);
  const auto failing = [](const BytePlane& band) -> BytePlane {
    if (band.rows() == 18) throw std::bad_alloc();  // the middle worker: its rows and the overlap on both sides
    return band;
  };
  const BytePlane plane(30, 4);
  EXPECT_THROW(FilterInBands(4, failing, plane), std::bad_alloc);
}

}  // namespace
}  // namespace quentara
