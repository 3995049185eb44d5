/// The picture reduced to its colours, under the outlines that leave only light and dark.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Every pixel at full value (that of HSV, 255), with its hue and saturation; so greys become white.
/// @param picture  "RGB".
/// @return an "RGB" picture.
ChannelSet TintForeground(const ChannelSet& picture);

}  // namespace quentara
