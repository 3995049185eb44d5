/// The dark areas of a picture, cut relative to the brightness of its subject.
#pragma once

#include "imageops/skin_tones.h"
#include "render/channel_set.h"

namespace quentara {

/// The level of max(R, G, B) above which a pixel is lit: floor(median + k * spread) + 0.5 with k = 10 * threshold - 6,
/// in single precision; at least 1.5 and at most 253.5. So a threshold of 0.5 cuts one spread below the median.
/// @param toneLevels  of the frame; a spread of 0 counts as 15.
/// @param threshold   0..1.
float ShadowCut(const Tones& toneLevels, float threshold);

/// 255 where max(R, G, B) is above the cut, else 0.
/// @param image  "RGB".
/// @return an outline mask of mode "L": the shadows are its lines.
ChannelSet ShadowMask(float cut, const ChannelSet& image);

}  // namespace quentara
