/// Woodcut Outlines: a print from a cut block, dark lines in the light and light lines in solid shadows.
#pragma once

#include "imageops/skin_tones.h"
#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with two line drawings laid over it as one mask. Where `ShadowMask` of `outlineSource` is lit, the mask
/// is the drawing of the tones G = `InkTones` of `source`; in its shadows it is the drawing of 255 - G, turned over. A
/// drawing is `InkThreshold` of `ThickLineMask`, both with the `InkLevels` of the settings.
/// @param toneLevels     those of the frame, for the shadows.
/// @param skinPoints     the skin pixels of `source`.
/// @param blur           for the tones in which lines are looked for; null for none.
/// @param source         "RGB", the frame as it came, of the size of `picture`.
/// @param outlineSource  "RGB", the source as blurred for the outlines.
/// @param picture        "RGB".
/// @throws Plugin::Interrupted; `BlurImage` and `ThickLineMask` check for a stop.
ChannelSet WoodcutOutlines(const WoodcutOutlineSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                           const PointList& skinPoints, const BlurSettings* blur, const ChannelSet& source,
                           const ChannelSet& outlineSource, const ChannelSet& picture);

}  // namespace quentara
