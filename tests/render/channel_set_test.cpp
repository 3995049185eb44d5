#include "render/channel_set.h"

#include <gtest/gtest.h>

#include "support/planes.h"

namespace quentara {
namespace {

ChannelSet GreyRamp() {
  return Grey(PlaneOf(2, 128, [](int y, int x) { return 128 * y + x; }));
}

TEST(ChannelSet, UnknownModesHaveNoPlanes) {
  const ChannelSet odd("RGBX", 4, 4);
  EXPECT_EQ(0u, odd.channelCount());
  EXPECT_EQ("", odd.mode());
  EXPECT_EQ(4u, ChannelCounts::Find("RGBA").value());
  EXPECT_EQ("", BlankLike(ChannelSet("RGBA", 2, 2), 3, 3).mode());
  EXPECT_EQ(3u, BlankLike(ChannelSet("RGB", 2, 2), 4, 5).channelCount());
}

TEST(ChannelSet, SplitGivesCopiesOfTheChannels) {
  std::mt19937 rng(2);
  const ChannelSet picture = RandomPicture(4, 3, rng);
  const std::vector<ChannelSet> channels = picture.Split();
  ASSERT_EQ(3u, channels.size());
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ("", FirstDifference(Grey(picture.planes(static_cast<int>(i))), channels[i]));
  EXPECT_EQ("1", ChannelSet("1", 2, 2).Split()[0].mode());
}

TEST(CopyChannels, FollowsThePairOfModes) {
  std::mt19937 rng(3);
  const ChannelSet picture = RandomPicture(2, 128, rng), grey = GreyRamp();
  ChannelSet target(picture), untouched(grey), other = RandomPicture(2, 128, rng);
  CopyChannels(grey, target);
  EXPECT_EQ("", FirstDifference(Rgb([&](int) { return grey.planes(0); }), target));
  CopyChannels(picture, untouched);
  EXPECT_EQ("", FirstDifference(grey, untouched));
  CopyChannels(picture, other);
  EXPECT_EQ("", FirstDifference(picture, other));
}

TEST(MixImages, RoundsHalfUpAndKeepsTheEnds) {
  const ChannelSet base = GreyRamp();
  for (const float weight : {0.0f, 0.25f, 0.5f, 1.0f}) {
    ChannelSet image = Grey(PlaneOf(2, 128, [](int, int) { return 255; }));
    MixImages(base, image, weight);
    const auto mix = [&](float sample) { return weight * 255 + (1 - weight) * sample + 0.5f; };
    EXPECT_EQ("", FirstDifference(EachPixel(mix, base.planes(0)), image.planes(0)));
  }
  ChannelSet other("RGB", 128, 2);
  other.planes(0) = 1;
  MixImages(base, other, 0.0f);
  EXPECT_EQ(1, other.planes(0)(0, 5));
}

}  // namespace
}  // namespace quentara
