/// Brightening that takes the lower edge of a picture's skin tones for white.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// The picture bent by the power curve of `gamma` (`PowerMap`), given new brightness, and bent back by that of
/// 1 / gamma.
///
/// The brightness is the value of HSV. With median and spread the `ToneLevels` of the bent picture's values over its
/// skin pixels and t = floor(median - spread) + 0.5, a value v becomes 255 above t, otherwise v * 255 / t, rounded half
/// up; hue and saturation stay. So a dark frame without skin has t = 100.5.
///
/// The power curves are in single precision for a host with one worker, in double precision for one with several.
/// @param gamma    1..1.5.
/// @param picture  "RGB".
/// @return an "RGB" picture.
ChannelSet LighterTone(float gamma, const ChannelSet& picture);

}  // namespace quentara
