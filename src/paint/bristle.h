/// Bristle: strokes of a dry brush, drawn out of sharpened detail.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// The luma of `FloatLuma709` goes through `Sharpen3x3`, limited to 0..255; where that moves it by more than
/// `kOutlierLimit` it stays as it was. Rounded half up, it is painted by `DeviationPaint`. Chroma stays as it is.
/// @param presharpen   the gain of the sharpening, >= 1.
/// @param spread, postsharpen, quality  the spread, push and quality of `DeviationPaint`.
/// @param picture      "RGB".
ChannelSet BristleStyle(float presharpen, int spread, float postsharpen, int quality, const ChannelSet& picture);

}  // namespace quentara
