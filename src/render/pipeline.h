/// The pipeline: one frame and its settings in, the finished frame out.
#pragma once

#include "render/plugin_host.h"
#include "render/settings.h"

namespace quentara {

namespace RenderPipeline {

/// Runs the stages of `settings` on its frame, in their fixed order. With no stage asked for, the result is the frame.
///
/// Reports progress 0 to 10 of 10 to `host`; each report is followed by a stop check.
/// @param host  becomes the thread's current host for the call; must outlive the result.
/// @return three buffers of height * width bytes allocated by `host`, to be freed by it.
/// @throws std::bad_alloc, Plugin::Interrupted; then no buffer is left allocated.
FrameBuffers Render(const RenderSettings& settings, Plugin::Host& host);

}  // namespace RenderPipeline

}  // namespace quentara
