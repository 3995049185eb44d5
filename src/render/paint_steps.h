/// The paint step of the pipeline: from the values of a style's parameters to those that its stage takes.
#pragma once

#include "imageops/skin_tones.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture painted in the style that is chosen; without one, the picture itself.
/// @param skinPoints  of the source; read by Flat Detailed.
ChannelSet PaintInStyle(const RenderSettings& settings, const PointList& skinPoints, const ChannelSet& picture);

}  // namespace quentara
