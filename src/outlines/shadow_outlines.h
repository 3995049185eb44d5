/// Shadow Outlines: the dark areas of a picture as solid areas of the outline colour.
#pragma once

#include "imageops/skin_tones.h"
#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with the `ShadowMask` of `outlineSource` laid over it.
/// @param settings       its threshold, antialias and transparency are read.
/// @param toneLevels     those of the frame.
/// @param outlineSource  "RGB", of the size of `picture`.
/// @param picture        "RGB".
ChannelSet ShadowOutlines(const ShadowOutlineSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                          const ChannelSet& outlineSource, const ChannelSet& picture);

}  // namespace quentara
