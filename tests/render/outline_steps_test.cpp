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
constexpr const BlurSettings* kNoBlur = nullptr;

struct Stages {
  /// Has `settings` use them, those of the shadow family only if it is asked to.
  void PutInto(RenderSettings& settings, bool shadows) const {
    settings.softOutlines = &soft;
    settings.comicOutlines = &comic;
    settings.markerOutlines = &marker;
    settings.conteOutlines = &conte;
    settings.shadowOutlines = shadows ? &shadow : nullptr;
    settings.woodcutOutlines = shadows ? &woodcut : nullptr;
    settings.scratchboardOutlines = shadows ? &scratchboard : nullptr;
  }

  SoftOutlineSettings soft = {0.4f, 2, 0.3f, kHigh};
  ComicOutlineSettings comic = {0.6f, 0.6f, 2, 0.5f, 0.3f, kHigh};
  // Lines of one pixel: thicker ones may depend on the number of workers.
  MarkerOutlineSettings marker = {false, 0, 5, 1, 1, 6, 0.5f, 0.3f};
  ConteOutlineSettings conte = {{1.0f, 0.9f, 0.8f}, 0.5f, 2, 0.4f, 3, 0.3f, kHigh};
  ShadowOutlineSettings shadow = {0.5f, 1.0f, false, 0.3f};
  WoodcutOutlineSettings woodcut = {0.5f, 0.5f, 0.5f, 3, 0.5f, false, 0.3f, kHigh};
  ScratchboardOutlineSettings scratchboard = {0.5f, 0, 4.0f, 3, 0.5f, false, 0.3f};
};

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
    skin = SkinPointList(source.planes(0), source.planes(1), source.planes(2));
    tones = ToneLevels(skin, BrightestPlane(source));
    settings.outlineColor = {0.3f, 0.1f, 0.0f};
    settings.frame = {source.planes(0).data(), source.planes(1).data(), source.planes(2).data(), source.height(),
                      source.width()};
  }

  ChannelSet Rendered(Plugin::Host& host) const {
    const FrameBuffers result = RenderPipeline::Render(settings, host);
    const std::vector<unsigned char*> buffers = {result.red, result.green, result.blue};
    const ChannelSet wrapped = ChannelSet::Wrap("RGB", result.width, result.height, buffers);
    ChannelSet picture = wrapped;  // its own samples
    for (unsigned char* const buffer : buffers) host.Free(buffer);
    return picture;
  }
  ChannelSet Rendered(int workers = 2) const {
    StandaloneHost host(workers);
    return Rendered(host);
  }

  ChannelSet source = ChannelSet("RGB", 57, 48);
  PointList skin;
  Tones tones;
  const OutlineColor color = MakeOutlineColor({0.3f, 0.1f, 0.0f});
  RenderSettings settings;
};

TEST(Outlines, LieOverEachOtherInTheirOrder) {
  const Stages stages;
  Frame frame;
  const ChannelSet& source = frame.source;
  const OutlineColor& color = frame.color;
  EXPECT_FALSE(frame.skin.empty());
  StandaloneHost twoWorkers(2);
  const Plugin::HostScope scope(twoWorkers);
  for (const bool shadows : {false, true})
    for (const bool useMainBlur : {false, true})
      for (const BlurSettings* const mainBlur : {kNoBlur, &kMainBlur})
        for (const BlurSettings* const outlineBlur : {kNoBlur, &kOutlineBlur}) {
          if (useMainBlur && outlineBlur != nullptr) continue;
          SCOPED_TRACE(testing::Message() << "shadows " << shadows << " use main blur " << useMainBlur << " main blur "
                                          << (mainBlur != nullptr) << " outline blur " << (outlineBlur != nullptr));
          frame.settings.useMainBlur = useMainBlur;
          frame.settings.mainBlur = mainBlur;
          frame.settings.outlineBlur = outlineBlur;
          stages.PutInto(frame.settings, shadows);

          ChannelSet work = source, seen = source;
          const BlurSettings* blur = outlineBlur;
          if (mainBlur != nullptr) work = BlurImage(*mainBlur, useMainBlur && shadows ? ChannelMode : LumaMode, source);
          if (useMainBlur && mainBlur != nullptr) seen = work, blur = mainBlur;
          if (outlineBlur != nullptr) seen = BlurImage(*outlineBlur, shadows ? ChannelMode : LumaMode, source);
          work = SoftOutlines(stages.soft, color, seen, work);
          work = ComicOutlines(stages.comic, color, frame.skin, blur, source, work);
          work = MarkerOutlines(stages.marker, color, CracklePlane(1, 5, 1, seen), work);
          work = ConteOutlines(stages.conte, color, seen, work);
          if (shadows) {
            work = ShadowOutlines(stages.shadow, color, frame.tones, seen, work);
            work = WoodcutOutlines(stages.woodcut, color, frame.tones, frame.skin, blur, source, seen, work);
            work = ScratchboardOutlines(stages.scratchboard, color, seen, work);
          }
          for (const int workers : {1, 2, 3, 7})
            EXPECT_EQ("", FirstDifference(work, frame.Rendered(workers))) << workers << " workers";
        }
}

// Nothing of an outline that cannot be seen is computed, its blur and the frame's tones included.
TEST(Outlines, CostNothingAtFullTransparency) {
  Frame frame;
  Stages stages;
  CountingHost without, with;
  const ChannelSet expected = frame.Rendered(without);
  stages.soft.transparency = stages.comic.transparency = stages.marker.transparency = stages.conte.transparency = 1.0f;
  stages.shadow.transparency = stages.woodcut.transparency = stages.scratchboard.transparency = 1.0f;
  stages.shadow.tintForeground = true;
  stages.PutInto(frame.settings, true);
  frame.settings.outlineBlur = &kOutlineBlur;
  EXPECT_EQ("", FirstDifference(expected, frame.Rendered(with)));
  EXPECT_EQ(without.allocations, with.allocations);
  EXPECT_EQ(without.checks, with.checks);
}

TEST(Outlines, LieOverThePrintStagesAndUnderTheStipple) {
  Frame frame;
  const Stages stages;
  const DuotoneSettings duotone = {{1.0f, 0.9f, 0.5f}, {0.1f, 0.0f, 0.3f}};
  const HalftoneSettings halftone = {3, 15.0f, 75.0f, 0.0f, kHigh, 0.4f};
  const StippleSettings stipple = {0.9f, 0.5f, 2, 0.3f};
  frame.settings.duotone = &duotone;
  frame.settings.halftone = &halftone;
  frame.settings.scratchboardOutlines = &stages.scratchboard;
  frame.settings.stipplePattern = &stipple;
  StandaloneHost host(2);
  const Plugin::HostScope scope(host);
  const StippleSeedScope seed(42);
  ChannelSet work = HalftonePattern(halftone, DuotoneShading(duotone, frame.source));
  work = ScratchboardOutlines(stages.scratchboard, frame.color, frame.source, work);
  work = StipplePattern(stipple, frame.color, frame.tones, frame.source, work);
  EXPECT_EQ("", FirstDifference(work, frame.Rendered()));
}

TEST(Outlines, MarkerFollowsThePaintedCrackle) {
  Frame frame;
  Stages stages;
  const CrackleSettings crackle = {2, 10, 3, 1.0f};
  stages.marker.reuseCrackle = true;
  frame.settings.style = Style::Crackle;
  frame.settings.crackle = &crackle;
  frame.settings.markerOutlines = &stages.marker;
  const ChannelSet painted = CrackleStyle(2, 10, 3, 1.0f, frame.source);
  const ChannelSet outlined = MarkerOutlines(stages.marker, frame.color, LumaPlane709(painted), painted);
  EXPECT_EQ("", FirstDifference(outlined, frame.Rendered()));
}

TEST(Outlines, ATintedForegroundIsNeitherPaintedNorBrightened) {
  Frame frame;
  Stages stages;
  const FlatShadedSettings flatShaded = {3, 20, 1.0f, kHigh};
  frame.settings.lighter = 0.5f;
  frame.settings.style = Style::FlatShaded;
  frame.settings.flatShaded = &flatShaded;
  frame.settings.shadowOutlines = &stages.shadow;
  frame.settings.scratchboardOutlines = &stages.scratchboard;
  const ChannelSet& source = frame.source;
  const auto outlined = [&](const ChannelSet& picture) {
    const ChannelSet shadows = ShadowOutlines(stages.shadow, frame.color, frame.tones, source, picture);
    return ScratchboardOutlines(stages.scratchboard, frame.color, source, shadows);
  };
  stages.scratchboard.tintForeground = true;
  const BytePlane white(EachPixel([](int) { return 255; }, source.planes(0)));
  EXPECT_EQ("", FirstDifference(ReplaceValue(source, white), TintForeground(source)));
  EXPECT_EQ("", FirstDifference(outlined(TintForeground(source)), frame.Rendered()));
  stages.scratchboard.tintForeground = false;
  EXPECT_NE("", FirstDifference(outlined(source), frame.Rendered()));
}

}  // namespace
}  // namespace quentara
