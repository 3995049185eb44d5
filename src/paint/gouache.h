/// Gouache: broad opaque dabs of even tone.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// With L the BT.709 luma and P its median over a window of radius `preblur`: P + presharpen * L - presharpen * P in
/// single precision, limited to 0..255, and P itself where that lies more than `kOutlierLimit` away from L. Rounded
/// half up, it is painted by `DeviationPaint`. Colours keep their hue.
/// @param preblur     in pixels, >= 0.
/// @param presharpen  >= 1; 1 gives L back.
/// @param spread, postsharpen, quality  the spread, push and quality of `DeviationPaint`.
/// @param picture     "RGB".
ChannelSet GouacheStyle(int preblur, float presharpen, int spread, float postsharpen, int quality,
                        const ChannelSet& picture);

}  // namespace quentara
