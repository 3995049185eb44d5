#include "outlines/comic_outlines.h"

#include <gtest/gtest.h>

namespace quentara {
namespace {

// A thin grey line on white paper, under another picture.
TEST(ComicOutlines, InkADarkLineAndNothingElse) {
  ChannelSet source("RGB", 21, 15), picture = source;
  for (int i = 0; i < 3; ++i) {
    source.planes(i) = 200;
    source.planes(i)(blitz::Range::all(), 10) = 120;
    picture.planes(i) = 77;
  }
  const ChannelSet inked =
      ComicOutlines({0.6f, 0.5f, 3, 0.0f, 0.0f, kFast}, MakeOutlineColor({0, 0, 0}), {}, nullptr, source, picture);
  for (int y = 0; y < 15; ++y)
    for (int x = 0; x < 21; ++x) ASSERT_EQ(x == 10 ? 0 : 77, inked.planes(1)(y, x)) << y << " " << x;
}

}  // namespace
}  // namespace quentara
