#include "outlines/compositing.h"

#include <gtest/gtest.h>

#include <cmath>

#include "blur/small_smooth.h"
#include "support/expect_styles.h"

namespace quentara {
namespace {

constexpr Color kBlack = {0.0f, 0.0f, 0.0f}, kGrey = {0.5f, 0.5f, 0.5f}, kRust = {0.7f, 0.25f, 0.1f};

int Rounded(float value) {
  return static_cast<int>(value + 0.5f);
}

// The four steps of the composite for one sample, in the order of their roundings.
int CompositeByDefinition(int picture, int mask, int smooth, float a, float t, float value, bool black) {
  const auto mix = [](float over, float under, float share) { return Rounded(over * share + under * (1.0f - share)); };
  int out = std::min(picture, mask);
  if (black && a > 0.0f) {
    const int multiplied = Rounded(static_cast<float>(picture * smooth) / 255.0f);
    out = a < 1.0f ? mix(static_cast<float>(multiplied), static_cast<float>(out), a) : multiplied;
  } else if (!black) {
    if (a > 0.0f) mask = mix(static_cast<float>(smooth), static_cast<float>(mask), a);
    const float m = static_cast<float>(mask) / 255.0f;
    out = Rounded(static_cast<float>(picture) * m + value * (1.0f - m));
  }
  return t > 0.0f ? mix(static_cast<float>(out), static_cast<float>(picture), 1.0f - t) : out;
}

ChannelSet RandomMask(int height, int width, std::mt19937& rng) {
  return ChannelSet("L", static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                    PatchyPlane(height, width, rng));
}

TEST(CompositeOutlineMask, EqualsItsDefinitionOnRandomPictures) {
  std::mt19937 rng(21);
  for (const auto& [height, width] : {std::pair{1, 1}, {2, 3}, {33, 40}})
    for (const Color& color : {kBlack, kGrey, kRust})
      for (const float antialias : {0.0f, 0.3f, 1.0f})
        for (const float transparency : {0.0f, 0.5f, 0.77f}) {
          SCOPED_TRACE(testing::Message() << height << "x" << width << " red " << color.red << " antialias "
                                          << antialias << " transparency " << transparency);
          const ChannelSet picture = RandomPicture(height, width, rng), mask = RandomMask(height, width, rng);
          const BytePlane smooth(BinomialSmooth(1, mask.planes(0)));
          const OutlineColor outline = MakeOutlineColor(color);
          const float values[] = {color.red * 255.0f, color.green * 255.0f, color.blue * 255.0f};
          ChannelSet expected = picture;
          for (int i = 0; i < 3; ++i)
            for (int p = 0; p < height * width; ++p)
              expected.planes(i).data()[p] = static_cast<unsigned char>(CompositeByDefinition(
                  picture.planes(i).data()[p], mask.planes(0).data()[p], smooth.data()[p], antialias, transparency,
                  values[i], outline.colorClass == OutlineColorClass::Black));
          ExpectWithAnyWorkers(expected, [&, a = antialias, t = transparency] {
            return CompositeOutlineMask(picture, mask, a, t, outline);
          });
        }
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
    const ChannelSet darkened = DarkenByMask(picture, mask, mix);
    for (int i = 0; i < 3; ++i)
      for (int p = 0; p < 42; ++p) {
        const int sample = picture.planes(i).data()[p], least = std::min<int>(sample, mask.planes(i).data()[p]);
        ASSERT_EQ(Rounded(static_cast<float>(least) * mix + static_cast<float>(sample) * (1.0f - mix)),
                  darkened.planes(i).data()[p]);
      }
  }
}

TEST(MultiplyPlanes, RoundsEveryProduct) {
  BytePlane a(256, 256), b(256, 256);
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x) a(y, x) = static_cast<unsigned char>(y), b(y, x) = static_cast<unsigned char>(x);
  const BytePlane product(MultiplyPlanes(a, b));
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x)
      ASSERT_EQ(Rounded(static_cast<float>(y * x) / 255.0f), product(y, x)) << y << " * " << x;
}

TEST(SoftLightSelf, KeepsEndsAndMiddle) {
  EXPECT_EQ(0.0f, SoftLightSelf(0.0f));
  EXPECT_EQ(127.5f, SoftLightSelf(127.5f));
  EXPECT_EQ(255.0f, SoftLightSelf(255.0f));
  for (int sample = 0; sample < 256; ++sample) {
    const double s = sample / 255.0;
    EXPECT_NEAR(255.0 * (3.0 * s * s - 2.0 * s * s * s), SoftLightSelf(static_cast<float>(sample)), 1e-3);
  }
}

}  // namespace
}  // namespace quentara
