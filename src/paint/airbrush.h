/// Airbrush: soft tones without small detail, and the detail pushed out again.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Two chains of grey morphology smooth the truncated luma, each a maximum, minimum, minimum and maximum filter or the
/// other way round, with a box mean after every filter: A first fills dark detail, B first takes bright detail away.
/// With Y the luma of `FloatLuma709`, in single precision and limited to 0..255 after each step:
///   F = A + mix * (B - A), result = Y + push * (F - Y).
/// Chroma stays as it is.
/// @param spread   radius of all windows, in pixels, >= 1.
/// @param mix      0 is chain A alone and 1 chain B alone, at half the cost; outside 0..1 it extrapolates.
/// @param push     how far the luma moves towards F; below 0 away from it.
/// @param picture  "RGB".
ChannelSet AirbrushStyle(int spread, float mix, float push, const ChannelSet& picture);

}  // namespace quentara
