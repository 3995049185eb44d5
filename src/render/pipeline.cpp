#include "render/pipeline.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>

#include "blur/blur_image.h"
#include "imageops/luma.h"
#include "imageops/skin_tones.h"
#include "outlines/tint_foreground.h"
#include "render/bands.h"
#include "render/lighter_step.h"
#include "render/outline_steps.h"
#include "render/paint_steps.h"
#include "render/print_steps.h"
#include "render/progress.h"
#include "render/stage_predicates.h"

namespace quentara {
namespace {

struct FreeBuffer {
  void operator()(unsigned char* buffer) const { Plugin::Free(buffer); }
};
using Buffer = std::unique_ptr<unsigned char, FreeBuffer>;

FrameBuffers HandOver(const ChannelSet& picture) {
  Buffer buffers[3];
  for (Buffer& buffer : buffers) buffer.reset(static_cast<unsigned char*>(Plugin::Allocate(picture.pixelCount())));
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (int i = 0; i < 3; ++i) std::copy_n(picture.planes(i).data() + first, count, buffers[i].get() + first);
  });
  return {buffers[0].release(), buffers[1].release(), buffers[2].release(), picture.height(), picture.width()};
}

/// The pictures of one render and the steps that lead from one to the next.
class FrameRender {
 public:
  explicit FrameRender(const RenderSettings& settings)
      : settings_(settings),
        source_(ChannelSet::Wrap("RGB", settings.frame.width, settings.frame.height,
                                 {settings.frame.red, settings.frame.green, settings.frame.blue})),
        work_("", 0, 0),
        outlineSource_(&source_) {}

  FrameBuffers Run() {
    AnalyseTones();
    Report(1);
    BlurSource();
    Report(2);
    ApplyLighter(settings_, work_);
    Report(3);
    if (!Tinted(settings_)) work_ = PaintInStyle(settings_, tones_.skinPoints, work_);
    if (ReusesCrackle(settings_)) crackleLines_.emplace(LumaPlane709(work_));
    Report(4);
    if (Tinted(settings_)) work_ = TintForeground(work_);
    ApplyPrintStages(settings_, work_);
    Report(5);
    BlurForOutlines();
    Report(6);
    ApplyOutlines(settings_, {source_, *outlineSource_, tones_, crackleLines_ ? &*crackleLines_ : nullptr}, work_);
    return HandOver(work_);
  }

 private:
  void AnalyseTones() {
    if (NeedsSkinPoints(settings_))
      tones_.skinPoints = SkinPointList(source_.planes(0), source_.planes(1), source_.planes(2));
    if (NeedsToneLevels(settings_)) tones_.levels = ToneLevels(tones_.skinPoints, BrightestPlane(source_));
  }

  void BlurSource() {
    if (settings_.mainBlur == nullptr) {
      work_ = source_.Share();
      return;
    }
    const bool inColor = (Detail(settings_) && !Tinted(settings_)) || Lit(settings_);
    work_ = BlurImage(*settings_.mainBlur, inColor ? ChannelMode : LumaMode, source_);
    if (!settings_.useMainBlur || OutlineViewOf(settings_) == OutlineView::None) return;
    outlineBlurred_.emplace(work_.Share());
    outlineSource_ = &*outlineBlurred_;
  }

  void BlurForOutlines() {
    const OutlineView view = OutlineViewOf(settings_);
    if (settings_.outlineBlur == nullptr || view == OutlineView::None) return;
    outlineBlurred_ = BlurImage(*settings_.outlineBlur, view == OutlineView::Color ? ChannelMode : LumaMode, source_);
    outlineSource_ = &*outlineBlurred_;
  }

  const RenderSettings& settings_;
  const ChannelSet source_;
  ChannelSet work_;  ///< none before the main blur
  FrameTones tones_;
  std::optional<BytePlane> crackleLines_;
  std::optional<ChannelSet> outlineBlurred_;
  const ChannelSet* outlineSource_;  ///< what the outlines analyse
};

}  // namespace

FrameBuffers RenderPipeline::Render(const RenderSettings& settings, Plugin::Host& host) {
  const Plugin::HostScope scope(host);
  Report(0);
  return FrameRender(settings).Run();
}

}  // namespace quentara
