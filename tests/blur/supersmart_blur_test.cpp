#include "blur/supersmart_blur.h"

#include <gtest/gtest.h>

#include <cmath>

#include "imageops/window_definitions.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane SupersmartByDefinition(float blurring, int testRadius, int blurRadius, const BytePlane& plane) {
  const FloatPlane deviations(
      MedianDeviationByDefinition(Square(testRadius), plane, MedianByDefinition(Square(testRadius), plane)));
  const float least = blitz::min(deviations), largest = std::max(1e-6f, blitz::max(deviations));
  BytePlane result(MedianByDefinition(Square(blurRadius), plane));
  for (int y = 0; y < plane.rows(); ++y)
    for (int x = 0; x < plane.cols(); ++x) {
      const float share = (deviations(y, x) - least) / largest;
      const float weight = static_cast<float>(std::pow(double{share}, double{blurring}));
      result(y, x) = static_cast<unsigned char>(plane(y, x) * weight + result(y, x) * (1.0f - weight) + 0.5f);
    }
  return result;
}

TEST(SupersmartBlur, EqualsItsDefinitionOnEachPlaneWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 23}, {23, 1}, {60, 31}})
    for (const float blurring : {0.05f, 0.25f, 1.0f})
      for (const auto& [test, blur] : {std::pair{2, 2}, {1, 4}, {5, 3}}) {
        ChannelSet image = RandomPicture(height, width, rng);
        image.planes(1) = 90;  // flat: it keeps its values beside the others
        ChannelSet expected = image;
        for (int i = 0; i < 3; ++i)
          expected.planes(i).reference(SupersmartByDefinition(blurring, test, blur, image.planes(i)));
        EXPECT_EQ("", FirstDifference(image.planes(1), expected.planes(1)));
        SCOPED_TRACE(testing::Message() << height << "x" << width << " blurring " << blurring << " radii " << test
                                        << " " << blur);
        ExpectWithAnyWorkers(expected,
                             [&, b = blurring, r1 = test, r2 = blur] { return SupersmartBlur(b, r1, r2, image); });
      }
}

TEST(SupersmartBlur, AtZeroRunsNothingButTheFirstStopCheck) {
  std::mt19937 rng(2);
  const ChannelSet image = RandomPicture(15, 11, rng);
  EXPECT_EQ("", FirstDifference(image, SupersmartBlur(0.0f, 5, 10, image)));
  EXPECT_EQ("", StopsAtEachOf(1, [&] { SupersmartBlur(0.0f, 5, 10, image); }));
}

}  // namespace
}  // namespace quentara
