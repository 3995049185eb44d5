/// Comic Outlines: hard lines as of black ink, placed by the tones of the skin in the frame.
#pragma once

#include "imageops/skin_tones.h"
#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with the inked lines of `source` laid over it: `ThickLineMask` of its `InkTones`, cut by `InkThreshold`
/// with the `InkLevels` of the settings, composited by `CompositeOutlineMask`.
/// @param skinPoints  the skin pixels of `source`.
/// @param blur        for the tones in which lines are looked for; null for none.
/// @param source      "RGB", the frame as it came, of the size of `picture`.
/// @param picture     "RGB".
/// @throws Plugin::Interrupted; `BlurImage` and `ThickLineMask` check for a stop.
ChannelSet ComicOutlines(const ComicOutlineSettings& settings, const OutlineColor& color, const PointList& skinPoints,
                         const BlurSettings* blur, const ChannelSet& source, const ChannelSet& picture);

}  // namespace quentara
