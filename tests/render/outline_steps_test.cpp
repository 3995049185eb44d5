#include "render/outline_steps.h"

#include <gtest/gtest.h>

#include "blur/blur_image.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "outlines/comic_outlines.h"
#include "outlines/conte_outlines.h"
#include "outlines/marker_outlines.h"
#include "outlines/scratchboard_outlines.h"
#include "outlines/shadow_outlines.h"
#include "outlines/soft_outlines.h"
#include "outlines/tint_foreground.h"
#include "outlines/woodcut_outlines.h"
#include "paint/crackle.h"
#include "print/duotone.h"
#include "print/halftone.h"
#include "print/stipple.h"
#include "print/stipple_seed.h"
#include "render/pipeline.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

constexpr BlurSettings kMainBlur = {BlurType::Box, 2, 20, kHigh, 0.25f, 5, 10};
constexpr BlurSettings kOutlineBlur = {BlurType::Gaussian, 3, 30, kFast, 0.25f, 5, 10};
constexpr SoftOutlineSettings kSoft = {0.4f, 2, 0.3f, kHigh};
constexpr ComicOutlineSettings kComic = {0.6f, 0.6f, 2, 0.5f, 0.3f, kHigh};
// Lines of one pixel: thicker ones may depend on the number of workers.
constexpr MarkerOutlineSettings kMarker = {false, 0, 5, 1, 1, 6, 0.5f, 0.3f};
constexpr ConteOutlineSettings kConte = {{1.0f, 0.9f, 0.8f}, 0.5f, 2, 0.4f, 3, 0.3f, kHigh};
constexpr ShadowOutlineSettings kShadow = {0.5f, 1.0f, false, 0.3f};
constexpr WoodcutOutlineSettings kWoodcut = {0.5f, 0.5f, 0.5f, 3, 0.5f, false, 0.3f, kHigh};
constexpr ScratchboardOutlineSettings kScratchboard = {0.5f, 0, 4.0f, 3, 0.5f, false, 0.3f};

/// Counts what a render asks of its host.
class CountingHost : public StandaloneHost {
 public:
  CountingHost() : StandaloneHost(2) {}
  void* Allocate(std::size_t bytes) override { return ++allocations, StandaloneHost::Allocate(bytes); }
  void CheckStop(const int*) override { ++checks; }
  int allocations = 0, checks = 0;
};

/// A picture and its render.
struct Frame {
  Frame() {
    std::mt19937 rng(9);
    const BytePlane luma(PatchyPlane(48, 57, rng));  // channels that go together, some of them of skin
    for (int i = 0; i < 3; ++i) source.planes(i) = RandomPlaneNear(luma, 8 + 16 * i, rng);
    settings.frame = {source.planes(0).data(), source.planes(1).data(), source.planes(2).data(), source.height(),
                      source.width()};
  }

  ChannelSet Rendered(Plugin::Host& host) const {
    const FrameBuffers result = RenderPipeline::Render(settings, host);
    ChannelSet picture("RGB", result.width, result.height);
    unsigned char* const buffers[] = {result.red, result.green, result.blue};
    for (int i = 0; i < 3; ++i) {
      std::copy_n(buffers[i], picture.pixelCount(), picture.planes(i).data());
      host.Free(buffers[i]);
    }
    return picture;
  }
  ChannelSet Rendered() const {
    StandaloneHost host(2);
    return Rendered(host);
  }

  ChannelSet source = ChannelSet("RGB", 57, 48);
  RenderSettings settings;
};

TEST(Outlines, LieOverEachOtherInTheirOrder) {
  StandaloneHost host(2);
  const Plugin::HostScope scope(host);
  for (const bool dark : {false, true})
    for (const bool useMainBlur : {false, true})
      for (const BlurSettings* const mainBlur : {static_cast<const BlurSettings*>(nullptr), &kMainBlur})
        for (const BlurSettings* const outlineBlur : {static_cast<const BlurSettings*>(nullptr), &kOutlineBlur}) {
          if (useMainBlur && outlineBlur != nullptr) continue;
          SCOPED_TRACE(testing::Message() << "dark " << dark << " use main blur " << useMainBlur << " main blur "
                                          << (mainBlur != nullptr) << " outline blur " << (outlineBlur != nullptr));
          Frame frame;
          RenderSettings& settings = frame.settings;
          const ChannelSet& source = frame.source;
          settings.useMainBlur = useMainBlur;
          settings.mainBlur = mainBlur;
          settings.outlineBlur = outlineBlur;
          settings.outlineColor = {0.3f, 0.1f, 0.0f};
          settings.softOutlines = &kSoft;
          settings.comicOutlines = &kComic;
          settings.markerOutlines = &kMarker;
          settings.conteOutlines = &kConte;
          if (dark) {
            settings.shadowOutlines = &kShadow;
            settings.woodcutOutlines = &kWoodcut;
            settings.scratchboardOutlines = &kScratchboard;
          }

          ChannelSet work = source, seen = source;
          const BlurSettings* blur = outlineBlur;
          if (mainBlur != nullptr) work = BlurImage(*mainBlur, useMainBlur && dark ? ChannelMode : LumaMode, source);
          if (useMainBlur && mainBlur != nullptr) seen = work, blur = mainBlur;
          if (outlineBlur != nullptr) seen = BlurImage(*outlineBlur, dark ? ChannelMode : LumaMode, source);
          const PointList skin = SkinPointList(source.planes(0), source.planes(1), source.planes(2));
          const Tones tones = ToneLevels(skin, BrightestPlane(source));
          const OutlineColor color = MakeOutlineColor(settings.outlineColor);
          work = SoftOutlines(kSoft, color, seen, work);
          work = ComicOutlines(kComic, color, skin, blur, source, work);
          work = MarkerOutlines(kMarker, color, CracklePlane(1, 5, 1, seen), work);
          work = ConteOutlines(kConte, color, seen, work);
          if (dark) {
            work = ShadowOutlines(kShadow, color, tones, seen, work);
            work = WoodcutOutlines(kWoodcut, color, tones, skin, blur, source, seen, work);
            work = ScratchboardOutlines(kScratchboard, color, seen, work);
          }
          EXPECT_FALSE(skin.empty());
          for (const int workers : {1, 2, 3, 7}) {
            StandaloneHost renderHost(workers);
            EXPECT_EQ("", FirstDifference(work, frame.Rendered(renderHost))) << workers << " workers";
          }
        }
}

// Nothing of an outline that cannot be seen is computed, its blur and the frame's tones included.
TEST(Outlines, CostNothingAtFullTransparency) {
  Frame frame;
  CountingHost without, with;
  const ChannelSet expected = frame.Rendered(without);
  auto soft = kSoft;
  auto comic = kComic;
  auto marker = kMarker;
  auto conte = kConte;
  auto shadow = kShadow;
  auto woodcut = kWoodcut;
  auto scratchboard = kScratchboard;
  soft.transparency = comic.transparency = marker.transparency = conte.transparency = shadow.transparency =
      woodcut.transparency = scratchboard.transparency = 1.0f;
  shadow.tintForeground = true;
  frame.settings.softOutlines = &soft;
  frame.settings.comicOutlines = &comic;
  frame.settings.markerOutlines = &marker;
  frame.settings.conteOutlines = &conte;
  frame.settings.shadowOutlines = &shadow;
  frame.settings.woodcutOutlines = &woodcut;
  frame.settings.scratchboardOutlines = &scratchboard;
  frame.settings.outlineBlur = &kOutlineBlur;
  EXPECT_EQ("", FirstDifference(expected, frame.Rendered(with)));
  EXPECT_EQ(without.allocations, with.allocations);
  EXPECT_EQ(without.checks, with.checks);
}

TEST(Outlines, LieOverThePrintStagesAndUnderTheStipple) {
  Frame frame;
  const DuotoneSettings duotone = {{1.0f, 0.9f, 0.5f}, {0.1f, 0.0f, 0.3f}};
  const HalftoneSettings halftone = {3, 15.0f, 75.0f, 0.0f, kHigh, 0.4f};
  const StippleSettings stipple = {0.9f, 0.5f, 2, 0.3f};
  frame.settings.outlineColor = {0.3f, 0.1f, 0.0f};
  frame.settings.duotone = &duotone;
  frame.settings.halftone = &halftone;
  frame.settings.scratchboardOutlines = &kScratchboard;
  frame.settings.stipplePattern = &stipple;
  StandaloneHost host(2);
  const Plugin::HostScope scope(host);
  const StippleSeedScope seed(42);
  const ChannelSet& source = frame.source;
  const OutlineColor color = MakeOutlineColor(frame.settings.outlineColor);
  const Tones tones =
      ToneLevels(SkinPointList(source.planes(0), source.planes(1), source.planes(2)), BrightestPlane(source));
  ChannelSet work = HalftonePattern(halftone, DuotoneShading(duotone, source));
  work = ScratchboardOutlines(kScratchboard, color, source, work);
  EXPECT_EQ("", FirstDifference(StipplePattern(stipple, color, tones, source, work), frame.Rendered()));
}

TEST(Outlines, MarkerFollowsThePaintedCrackle) {
  Frame frame;
  const CrackleSettings crackle = {2, 10, 3, 1.0f};
  auto marker = kMarker;
  marker.reuseCrackle = true;
  frame.settings.style = Style::Crackle;
  frame.settings.crackle = &crackle;
  frame.settings.markerOutlines = &marker;
  const ChannelSet painted = CrackleStyle(2, 10, 3, 1.0f, frame.source);
  const OutlineColor black = MakeOutlineColor(frame.settings.outlineColor);
  EXPECT_EQ("", FirstDifference(MarkerOutlines(marker, black, LumaPlane709(painted), painted), frame.Rendered()));
}

TEST(Outlines, ATintedForegroundIsNeitherPaintedNorBrightened) {
  Frame frame;
  const FlatShadedSettings flatShaded = {3, 20, 1.0f, kHigh};
  auto shadow = kShadow;
  auto scratchboard = kScratchboard;
  frame.settings.lighter = 0.5f;
  frame.settings.style = Style::FlatShaded;
  frame.settings.flatShaded = &flatShaded;
  frame.settings.shadowOutlines = &shadow;
  frame.settings.scratchboardOutlines = &scratchboard;
  const OutlineColor color = MakeOutlineColor(frame.settings.outlineColor);
  const ChannelSet& source = frame.source;
  const Tones tones =
      ToneLevels(SkinPointList(source.planes(0), source.planes(1), source.planes(2)), BrightestPlane(source));
  const auto outlined = [&](const ChannelSet& picture) {
    return ScratchboardOutlines(scratchboard, color, source, ShadowOutlines(shadow, color, tones, source, picture));
  };
  scratchboard.tintForeground = true;
  EXPECT_EQ("", FirstDifference(outlined(TintForeground(source)), frame.Rendered()));
  FloatChannelSet hsv = RgbToHsv(source);
  hsv.planes(2) = 255.0f;
  const std::vector<FloatChannelSet> parts = hsv.Split();
  EXPECT_EQ("", FirstDifference(HsvToRgb(parts[0], parts[1], parts[2]), TintForeground(source)));
  scratchboard.tintForeground = false;
  EXPECT_NE("", FirstDifference(outlined(source), frame.Rendered()));
}

}  // namespace
}  // namespace quentara
