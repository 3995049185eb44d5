/// The paint step of the pipeline: from the values of a style's parameters to those that its stage takes.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture painted in the style that is chosen; for a style that this step does not run, the picture itself.
ChannelSet PaintInStyle(const RenderSettings& settings, const ChannelSet& picture);

}  // namespace quentara
