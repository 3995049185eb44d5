/// Scratchboard Outlines: a picture scratched in white through black ink.
#pragma once

#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with a `ScratchMask` of `outlineSource` laid over it. The mask's tone is 255 * threshold; its push is
/// deviation * (10^(1 - detail / 5) - 1) * 10 / 9 / 200, from none at a detail of 5 to 0.05 * deviation at 0.
///
/// The deviation is that of the BT.601 luma: the mean of its distances from its mean, each distance rounded half up.
/// Both means are running sums in scan order, in single precision as is everything here; so they are those of the
/// whole frame.
/// @param settings       all but the tint is read.
/// @param outlineSource  "RGB", of the size of `picture`.
/// @param picture        "RGB".
/// @throws Plugin::Interrupted; the stop is checked once the neighbourhoods are known.
ChannelSet ScratchboardOutlines(const ScratchboardOutlineSettings& settings, const OutlineColor& color,
                                const ChannelSet& outlineSource, const ChannelSet& picture);

/// Values of `ScratchboardOutlineSettings::style`.
enum ScratchStyle : int { kRough = 0, kSmooth = 1 };

/// Black and white, each pixel cut against its own neighbourhood, without black lines one pixel wide.
///
/// With v = max(R, G, B) and f that of the neighbourhood (rough: `MedianFilter` of radius focus; smooth:
/// `BinomialSmooth` of focus passes), in single precision:
///
/// | where    | white is                                                          |
/// |----------|-------------------------------------------------------------------|
/// | f > tone | v >= f + 127.5 * push * (tone - f) / (255 - tone): white prevails |
/// | f < tone | v > f + 127.5 * push * (tone - f) / tone: black prevails          |
/// | f = tone | v > f                                                             |
///
/// Then a pixel becomes white if it and its two neighbours along a column are black while the columns beside them are
/// white in all three rows; and likewise along a row. The two rows and columns at each edge are not cleaned.
/// @param tone   0..255.
/// @param style  a `ScratchStyle`.
/// @param push   >= 0.
/// @param focus  >= 1.
/// @param image  "RGB".
/// @return an outline mask of mode "L".
ChannelSet ScratchMask(float tone, int style, float push, int focus, const ChannelSet& image);

}  // namespace quentara
