#include "outlines/thick_line_mask.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "imageops/luma.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "outlines/compositing.h"
#include "outlines/rotate_image.h"
#include "render/settings.h"
#include "render/standalone_host.h"
#include "support/planes.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

BytePlane MeasureByDefinition(int r, const BytePlane& luma) {
  const auto measure = [](float sample, float level) {
    const float v = 256.0f * sample / (level + 1.0f);
    const int ratio = level < 3.0f ? static_cast<int>(level) : static_cast<int>((v > 255.0f ? 255.0f : v) + 0.5f);
    return ToByte(SoftLightSelf(static_cast<float>(ratio)));
  };
  return EachPixel(measure, luma, MaxFilter(r, MedianFilter(r, luma)));
}

// The whole square is turned and measured; a window row just below it is rotated like any other.
BytePlane MaskByDefinition(int r, const BytePlane& luma, bool high) {
  const int h = luma.rows(), w = luma.cols();
  const BytePlane mask(MeasureByDefinition(r, luma));
  if (!high) return mask;
  int side = static_cast<int>(std::floor(std::sqrt(static_cast<double>(w * w + h * h)) + 0.5));
  side += side % 2 == 1 ? 4 : 5;
  const int left = (side - 1) / 2 + 1 - w / 2, top = (side - 1) / 2 + 1 - h / 2;
  const BytePlane square(PlaneOf(side, side, [&](int row, int column) -> int {
    const int y = row - top, x = column - left;
    return y < -1 || y > h || x < -1 || x > w ? 0 : luma(std::clamp(y, 0, h - 1), std::clamp(x, 0, w - 1));
  }));
  const BytePlane turned(RotateImage(Rotation(side, side, 45.0f), {square, 0, 0}, {0, 0, side, side}));
  const BytePlane lines(MeasureByDefinition(r, turned));
  const BytePlane back(RotateImage(Rotation(side, side, -45.0f), {lines, 0, 0}, {0, 0, side + 2, side}));
  return PlaneOf(h, w, [&](int y, int x) {
    const float upright = mask(y, x);
    return y < 2 ? upright : static_cast<float>(back(top + 2 + y, left + 1 + x)) * 0.5f + upright * 0.5f + 0.5f;
  });
}

// Fills what it allocates, so that a sample that nobody wrote shows.
class FillingHost : public StandaloneHost {
 public:
  using StandaloneHost::StandaloneHost;
  void* Allocate(std::size_t bytes) override { return std::memset(StandaloneHost::Allocate(bytes), 0xA5, bytes); }
};

TEST(ThickLineMask, EqualsItsDefinitionWithAnyWorkers) {
  std::mt19937 rng(31);
  for (const auto& [height, width] : {std::pair{1, 1}, {3, 1}, {2, 9}, {5, 5}, {1, 30}, {33, 41}, {90, 64}, {120, 250}})
    for (const int thickness : {1, 2, 3, 10}) {
      const ChannelSet picture = RandomPicture(height, width, rng);
      const BytePlane luma(LumaPlane601(picture));
      for (const int quality : {kFast, kHigh}) {
        const BytePlane expected(MaskByDefinition(thickness, luma, quality == kHigh));
        for (const int workers : {1, 2, 3, 7}) {
          SCOPED_TRACE(testing::Message() << height << "x" << width << " thickness " << thickness << " quality "
                                          << quality << " workers " << workers);
          FillingHost host(workers);
          const Plugin::HostScope scope(host);
          EXPECT_EQ("", FirstDifference(expected, ThickLineMask(thickness, picture, quality).planes(0)));
        }
      }
    }
  const ChannelSet picture("L", 30, 30);
  EXPECT_EQ("", StopsAtEachOf(3, [&] { ThickLineMask(2, picture, kFast); }));
  EXPECT_EQ("", StopsAtEachOf(4, [&] { ThickLineMask(2, picture, kHigh); }));
}

}  // namespace
}  // namespace quentara
