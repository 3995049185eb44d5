/// The print step of the pipeline: the stages that finish the painted picture before outlines are laid over it.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// Runs Duotone Shading on the picture, if it is asked for, then Halftone Pattern, if it is visible.
void ApplyPrintStages(const RenderSettings& settings, ChannelSet& picture);

}  // namespace quentara
