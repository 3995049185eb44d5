// The outlines of soft lines: Soft and Conte.
#include "outlines/soft_outlines.h"

#include <gtest/gtest.h>

#include <cmath>

#include "blur/small_smooth.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "outlines/conte_outlines.h"
#include "outlines/soft_line_merge.h"
#include "outlines/thick_line_mask.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

float Pow(float base, float exponent) {
  return static_cast<float>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
}

FloatPlane Powered(const ChannelSet& mask, float exponent) {
  return EachPixel<float>([&](float a) { return 255.0f * Pow(a, exponent) / Pow(255.0f, exponent); }, mask.planes(0));
}

// Step by step over whole planes, with the value of 255 or that of a picture under the lines.
FloatPlane MergedByDefinition(const SoftLines& soft, const FloatPlane* value) {
  FloatPlane p(Powered(soft.lines, soft.exponent)), q(Powered(soft.thickLines, soft.thickExponent));
  p = ((255.0f - p) * (p * p / 255.0f) + p * (255.0f - (255.0f - p) * (255.0f - p) / 255.0f)) / 255.0f;
  if (value != nullptr) {
    p = *value * p / 255.0f;
    q = *value * q / 255.0f;
  }
  p = q * 0.5f + p * 0.5f;
  const FloatPlane t(1.0f - p / 255.0f);
  return FloatPlane(p * t + BoxSmooth3Float(1, p) * (1.0f - t));
}

ChannelSet StageByDefinition(const SoftOutlineSettings& settings, const OutlineColor& color, const ChannelSet& source,
                             const ChannelSet& picture, bool alone) {
  const auto mask = [&](int thickness) { return ThickLineMask(thickness, source, settings.quality); };
  const SoftLines soft{12.0f - (1.0f - settings.strength) * 20.0f / 3.0f, 11.0f - (1.0f - settings.strength) * 10.0f,
                       mask(settings.thickness), mask(settings.thickness + 1)};
  const FloatPlane value(blitz::cast<float>(BrightestPlane(picture)));
  const bool black = color.colorClass == OutlineColorClass::Black;
  FloatPlane merged(MergedByDefinition(soft, black ? &value : nullptr));
  if (!black || !alone) merged = blitz::floor(merged + 0.5f);
  ChannelSet out = black ? ReplaceValue(picture, merged)
                         : OverlayOutlineColor(picture, Grey(BytePlane(blitz::cast<unsigned char>(merged))), color);
  if (settings.transparency > 0.0f) MixImages(picture, out, 1.0f - settings.transparency);
  return out;
}

// With frames lower than the workers, bands of a single row, and bands of several strips.
TEST(SoftOutlines, EqualTheirDefinitionWithOneWorkerAndWithSeveral) {
  std::mt19937 rng(51);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 19}, {19, 1}, {2, 2}, {5, 6}, {9, 12}, {100, 23}})
    for (const auto& [strength, transparency, quality] :
         {std::tuple{0.5f, 0.0f, kFast}, {0.0f, 0.35f, kHigh}, {1.0f, 0.5f, kFast}})
      for (const Color& color : {Color{0.0f, 0.0f, 0.0f}, {0.4f, 0.4f, 0.4f}, {0.8f, 0.1f, 0.3f}}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " strength " << strength << " red " << color.red);
        const ChannelSet source = RandomPicture(height, width, rng), picture = RandomPicture(height, width, rng);
        const SoftOutlineSettings settings{strength, 1 + static_cast<int>(rng() % 4), transparency, quality};
        const OutlineColor outline = MakeOutlineColor(color);
        ForWorkers([&](int workers) {
          EXPECT_EQ("", FirstDifference(StageByDefinition(settings, outline, source, picture, workers == 1),
                                        SoftOutlines(settings, outline, source, picture)));
        });
      }
}

int CrayonsByDefinition(int dark, int light, int darkMove, int lightMove) {
  if (darkMove == 0) return lightMove == 0 ? dark : light;
  if (lightMove == 0) return dark;
  const float w = static_cast<float>(darkMove) / static_cast<float>(darkMove + lightMove);
  return ToByte(w * static_cast<float>(dark) + (1.0f - w) * static_cast<float>(light));
}

ChannelSet CrayonsByDefinition(const ChannelSet& dark, const ChannelSet& light, const ChannelSet& picture) {
  const BytePlane ld(LumaPlane601(dark)), ll(LumaPlane601(light)), lp(LumaPlane601(picture));
  const auto merge = [](int d, int l, int darkLuma, int lightLuma, int luma) {
    return CrayonsByDefinition(d, l, std::abs(darkLuma - luma), std::abs(lightLuma - luma));
  };
  return Rgb([&](int i) { return EachPixel(merge, dark.planes(i), light.planes(i), ld, ll, lp); });
}

// Drawings that leave about a third of the pixels of a picture alone.
ChannelSet DrawnOver(const ChannelSet& picture, std::mt19937& rng) {
  const BytePlane& red = picture.planes(0);
  const ChannelSet drawing = RandomPicture(red.rows(), red.cols(), rng);
  const BytePlane choice(RandomPlane(red.rows(), red.cols(), rng, 0, 2));
  const auto draw = [](int sample, int drawn, int chosen) { return chosen == 0 ? sample : drawn; };
  return Rgb([&](int i) { return EachPixel(draw, picture.planes(i), drawing.planes(i), choice); });
}

TEST(CrayonMerge, EqualsItsDefinitionWithAnyWorkers) {
  ForPictures([](const ChannelSet& picture, int seed) {
    std::mt19937 rng(static_cast<unsigned>(seed));
    const ChannelSet dark = DrawnOver(picture, rng), light = DrawnOver(picture, rng);
    const auto merge = [&] {
      ChannelSet merged = dark;
      CrayonMerge(merged, light, picture);
      return merged;
    };
    ExpectWithAnyWorkers(CrayonsByDefinition(dark, light, picture), merge);
    EXPECT_EQ("", StopsAtEachOf(1, merge));
  });
}

}  // namespace
}  // namespace quentara
