#include "host/render_command.h"

#include <memory>
#include <new>

#include "host/frame_handover.h"
#include "host/plugin_nivra.h"
#include "host/settings_reader.h"
#include "render/pipeline.h"

namespace Nivra {
namespace {

/// A frame's three buffers in the host's memory.
class OwnedFrame {
 public:
  OwnedFrame(Plugin::Host& host, const PF_EffectWorld& world)
      : OwnedFrame(host, {nullptr, nullptr, nullptr, static_cast<std::uint32_t>(world.height),
                          static_cast<std::uint32_t>(world.width)}) {
    const std::size_t bytes = static_cast<std::size_t>(world.height) * static_cast<std::size_t>(world.width);
    for (unsigned char** buffer : {&frame_.red, &frame_.green, &frame_.blue})
      *buffer = static_cast<unsigned char*>(host.Allocate(bytes));
  }
  OwnedFrame(Plugin::Host& host, const quentara::FrameBuffers& frame) : host_(host), frame_(frame) {}
  OwnedFrame(const OwnedFrame&) = delete;
  OwnedFrame& operator=(const OwnedFrame&) = delete;
  ~OwnedFrame() {
    for (unsigned char* buffer : {frame_.red, frame_.green, frame_.blue}) host_.Free(buffer);
  }

  const quentara::FrameBuffers& buffers() const { return frame_; }

 private:
  Plugin::Host& host_;
  quentara::FrameBuffers frame_;
};

void Render(EffectContext& context, PF_EffectWorld& output) {
  const PF_EffectWorld& input = context.params[0]->u.ld;
  if (input.width <= 0 || input.height <= 0) return;
  const OwnedFrame source(context.plugin, input);
  ReadColors(input, source.buffers());

  FrameSettings frame;
  frame.settings.frame = source.buffers();
  ReadSettings(ParamCursor(context.params, context.host.HasGroups()), HorizontalScale(*context.host.inData()), frame);
  const OwnedFrame picture(context.plugin, quentara::RenderPipeline::Render(frame.settings, context.plugin));

  if (context.host.pendingError() != PF_Err_NONE) return;
  WriteColors(picture.buffers(), output);
  CopyAlpha(input, output);
  if (frame.blendWithOriginal > 0.0f) BlendWithOriginal(input, frame.blendWithOriginal, output);
}

}  // namespace

PF_Err RenderCommand(PF_InData* inData, PF_ParamDef* params[], PF_EffectWorld& output) {
  EffectContext context(inData, params);
  try {
    Render(context, output);
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  } catch (const Plugin::Interrupted&) {
  } catch (const Interrupted&) {
  } catch (...) {
    // A stop that the host asked for explains whatever else went wrong.
    if (context.host.pendingError() == PF_Err_NONE) throw;
  }
  return context.host.pendingError();
}

}  // namespace Nivra
