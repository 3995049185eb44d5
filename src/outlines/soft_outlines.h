/// Soft Outlines: grey, pencil-soft lines that follow the tonal edges and fade out smoothly.
#pragma once

#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with the soft lines of `outlineSource` (`FindSoftLines`) laid over it: as a mask in the colour, but for
/// black multiplied into the picture's value, which keeps hue and saturation (`SoftLineOnValue`).
/// @param outlineSource  "RGB" or "L", of the size of `picture`.
/// @param picture        "RGB".
/// @throws Plugin::Interrupted; `ThickLineMask` checks for a stop.
ChannelSet SoftOutlines(const SoftOutlineSettings& settings, const OutlineColor& color, const ChannelSet& outlineSource,
                        const ChannelSet& picture);

}  // namespace quentara
