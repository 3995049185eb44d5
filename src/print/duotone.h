/// Replacing a picture's colours by a ramp between two.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// Each pixel takes the mix of the two colours that its brightest channel asks for: with m = max(R, G, B) / 255,
///   trunc(l * m + d * (1 - m) + 0.5)
/// in single precision, where d is the darkest colour's channel times 255, and l the lightest one's, rounded to a byte.
/// The ramp follows the brightest channel, not the luma: saturated blue counts as bright.
/// @param settings  channels 0..1.
/// @param picture   "RGB".
ChannelSet DuotoneShading(const DuotoneSettings& settings, const ChannelSet& picture);

}  // namespace quentara
