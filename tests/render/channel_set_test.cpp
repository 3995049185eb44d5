#include "render/channel_set.h"

#include <gtest/gtest.h>

#include "support/planes.h"

namespace quentara {
namespace {

ChannelSet GreyRamp() {
  BytePlane ramp(2, 128);
  for (int i = 0; i < 256; ++i) ramp.data()[i] = static_cast<unsigned char>(i);
  return ChannelSet("L", 128, 2, ramp);
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
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ("L", channels[static_cast<std::size_t>(i)].mode());
    EXPECT_EQ("", FirstDifference(picture.planes(i), channels[static_cast<std::size_t>(i)].planes(0)));
  }
  EXPECT_EQ("1", ChannelSet("1", 2, 2).Split()[0].mode());
}

TEST(CopyChannels, FollowsThePairOfModes) {
  std::mt19937 rng(3);
  const ChannelSet picture = RandomPicture(2, 128, rng), grey = GreyRamp();
  ChannelSet target(picture);
  CopyChannels(grey, target);
  for (int i = 0; i < 3; ++i) EXPECT_EQ("", FirstDifference(grey.planes(0), target.planes(i)));
  ChannelSet untouched(grey);
  CopyChannels(picture, untouched);
  EXPECT_EQ("", FirstDifference(grey, untouched));
}

TEST(MixImages, RoundsHalfUpAndKeepsTheEnds) {
  const ChannelSet base = GreyRamp();
  ChannelSet white(base);
  white.planes(0) = 255;
  for (const float weight : {0.0f, 0.25f, 0.5f, 1.0f}) {
    ChannelSet image(white);
    MixImages(base, image, weight);
    for (int v = 0; v < 256; ++v)
      EXPECT_EQ(static_cast<int>(weight * 255 + (1 - weight) * static_cast<float>(v) + 0.5f),
                image.planes(0).data()[v]);
  }
  ChannelSet other("RGB", 128, 2);
  other.planes(0) = 1;
  MixImages(base, other, 0.0f);
  EXPECT_EQ(1, other.planes(0)(0, 5));
}

}  // namespace
}  // namespace quentara
