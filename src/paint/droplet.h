/// Droplet: the picture as drops of one tone that have run together.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Gathers the luma into patches: `passes` mode filters, each on the result of the one before, and a median; then
/// `AtStrength` and, whatever the strength, half and half with a 3 x 3 mean. Colours keep their hue.
/// @param radius    of the windows, in pixels, >= 1.
/// @param strength  0..5, as `AtStrength` takes it.
/// @param picture   "RGB".
ChannelSet DropletStyle(int radius, float strength, int passes, const ChannelSet& picture);

}  // namespace quentara
