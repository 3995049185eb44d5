/// Random specks over the dark parts of a picture, as in stipple engraving.
#pragma once

#include <cstdint>

#include "imageops/skin_tones.h"
#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The mask of the specks, 0 on black ones.
///
/// With s the tones' spread, or 15 if that is 0, each channel of `outlineSource` is lifted by (1 - density) * 7.5 * s,
/// limited and rounded; then it goes through `NoiseDots`, red with the seed, green and blue each with
/// trunc(seed * 2 / 3 + 0.5) of the seed before. A pixel is a speck where no channel is above the cut
///   floor(median + (thresh * 10 - 5.5) * s) + 0.5, limited to 1.5..253.5.
/// All in single precision. A dotSize above 1 makes each speck a disc by `DiscStamp`(dotSize - 1).
///
/// Works in bands of rows, and the grain of a band stops at its edges: pixels next to a cut depend on the worker count.
/// @param settings       dotSize >= 1; its transparency is not read.
/// @param outlineSource  "RGB".
/// @return "L".
ChannelSet StippleMask(const StippleSettings& settings, const Tones& toneLevels, std::uint32_t seed,
                       const ChannelSet& outlineSource);

/// The least of the plane and of a disc at each of its samples that are 0.
///
/// The disc has 2 * radius + 1 pixels a side, each the rounded mean of 3 x 3 cells of a disc three times as fine: 0
/// within 3 * radius + 1 of the centre cell, else 255. Discs are clipped to the plane.
/// @param radius  1..254.
/// Cost a pixel: O(radius). A row of the disc only grows away from its middle, so of all specks in a row of the plane
/// only the nearest one counts for a pixel.
BytePlane DiscStamp(int radius, const BytePlane& plane);

/// The picture with the `StippleMask` of a new `StippleSeed` laid over it. @param picture  "RGB".
ChannelSet StipplePattern(const StippleSettings& settings, const OutlineColor& color, const Tones& toneLevels,
                          const ChannelSet& outlineSource, const ChannelSet& picture);

}  // namespace quentara
