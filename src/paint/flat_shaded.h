/// Flat Shaded: the brightness of a picture gathered into broad flat areas with clean borders, under its own colours.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// Eight passes of a range median over the BT.709 luma, each measured against the unfiltered luma. Pass i, from 0, has
/// radius flatness + i and limit simplicity + i; at `kHigh` its window is a square, at `kFast` a line, vertical first
/// and then by turns. `AtStrength` and `ReplaceLuma` put the result back into the picture.
/// @param settings  flatness >= 0 in pixels, simplicity >= 0 in sample values, strength >= 0.
/// @param image  "RGB".
/// @return an "RGB" picture; at strength 0 `image` itself.
/// @throws Plugin::Interrupted; the stop is checked after every pass.
ChannelSet FlatShaded(const FlatShadedSettings& settings, const ChannelSet& image);

}  // namespace quentara
