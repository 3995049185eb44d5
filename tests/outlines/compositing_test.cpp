#include "outlines/compositing.h"

#include <gtest/gtest.h>

#include "blur/small_smooth.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

constexpr Color kBlack = {0.0f, 0.0f, 0.0f}, kGrey = {0.5f, 0.5f, 0.5f}, kRust = {0.7f, 0.25f, 0.1f};

int Rounded(float value) {
  return static_cast<int>(value + 0.5f);
}

int Mixed(float over, float under, float share) {
  return Rounded(over * share + under * (1.0f - share));
}

// The four steps of the composite for one sample, in the order of their roundings.
int CompositeByDefinition(int picture, int mask, int smooth, float a, float t, float value, bool black) {
  int out = std::min(picture, mask);
  if (black && a > 0.0f) {
    const int multiplied = Rounded(static_cast<float>(picture * smooth) / 255.0f);
    out = a < 1.0f ? Mixed(multiplied, out, a) : multiplied;
  } else if (!black) {
    if (a > 0.0f) mask = Mixed(smooth, mask, a);
    out = Mixed(picture, value, static_cast<float>(mask) / 255.0f);
  }
  return t > 0.0f ? Mixed(out, picture, 1.0f - t) : out;
}

TEST(CompositeOutlineMask, EqualsItsDefinitionOnRandomPictures) {
  ForPictures([](const ChannelSet& picture, int) {
    std::mt19937 rng(21);
    const BytePlane mask(PatchyPlane(picture.planes(0).rows(), picture.planes(0).cols(), rng));
    const BytePlane smoothMask(BinomialSmooth(1, mask));
    for (const Color& color : {kBlack, kGrey, kRust})
      for (const float a : {0.0f, 0.3f, 1.0f})
        for (const float t : {0.0f, 0.5f, 0.77f}) {
          SCOPED_TRACE(testing::Message() << "red " << color.red << " antialias " << a << " transparency " << t);
          const OutlineColor outline = MakeOutlineColor(color);
          const float values[] = {color.red * 255.0f, color.green * 255.0f, color.blue * 255.0f};
          const ChannelSet expected = Rgb([&](int i) {
            const auto composite = [&](int sample, int line, int smooth) {
              return CompositeByDefinition(sample, line, smooth, a, t, values[i], color.red == 0.0f);
            };
            return EachPixel(composite, picture.planes(i), mask, smoothMask);
          });
          ExpectWithAnyWorkers(expected, [&] { return CompositeOutlineMask(picture, Grey(mask), a, t, outline); });
        }
  });
}

TEST(OutlineColor, HasItsClass) {
  EXPECT_EQ(OutlineColorClass::Black, MakeOutlineColor(kBlack).colorClass);
  EXPECT_EQ(OutlineColorClass::Grey, MakeOutlineColor(kGrey).colorClass);
  EXPECT_EQ(OutlineColorClass::Colored, MakeOutlineColor({0.0f, 0.0f, 0.1f}).colorClass);
  EXPECT_EQ(127.5f, MakeOutlineColor(kGrey).green);
}

TEST(DarkenByMask, TakesAMaskForEachPlane) {
  std::mt19937 rng(23);
  const ChannelSet picture = RandomPicture(6, 7, rng), mask = RandomPicture(6, 7, rng);
  for (const float mix : {0.0f, 0.35f, 1.0f}) {
    const auto darken = [&](int sample, int line) { return Mixed(std::min(sample, line), sample, mix); };
    const ChannelSet expected = Rgb([&](int i) { return EachPixel(darken, picture.planes(i), mask.planes(i)); });
    ExpectWithAnyWorkers(expected, [&] { return DarkenByMask(picture, mask, mix); });
  }
}

TEST(MultiplyPlanes, RoundsEveryProduct) {
  const BytePlane a(PlaneOf(256, 256, [](int y, int) { return y; })),
      b(PlaneOf(256, 256, [](int, int x) { return x; }));
  const BytePlane products(PlaneOf(256, 256, [](int y, int x) { return Rounded(static_cast<float>(y * x) / 255.0f); }));
  ExpectWithAnyWorkers(products, [&] { return MultiplyPlanes(a, b); });
}

}  // namespace
}  // namespace quentara
