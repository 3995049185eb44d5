/// Luma in single precision, and putting a changed one back into colour; by the BT.709 weights 0.2126, 0.7152, 0.0722.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// @param picture  "RGB".
/// @return luma * 255 + 0.5 for channels 0..1, so that truncating rounds it.
FloatPlane FloatLuma709(const ChannelSet& picture);

/// Gives each pixel a new luma and keeps its colour differences, with B, R and Y for channels and luma of 0..1:
/// U = (B - Y) / 1.8556 and V = (R - Y) / 1.5748, both -0.5..0.5. Channels are limited to 0..255 and rounded half up.
/// @param picture  "RGB".
/// @param luma     0..255, without the 0.5 that `FloatLuma709` adds, of the size of `picture`.
/// @return an "RGB" picture.
ChannelSet WithLuma709(const ChannelSet& picture, const FloatPlane& luma);
ChannelSet WithLuma709(const ChannelSet& picture, const BytePlane& luma);

}  // namespace quentara
