/// Marker Outlines: closed lines of even width around flat regions, as with a felt marker.
#pragma once

#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with the `MarkerLines` of `regions` laid over it. With L the lines and S one pass of `BoxSmooth3` over
/// them, the mask is the square of min(L, S), on the scale of 0..1.
/// @param settings  its thickness, minimum difference, antialias and transparency are read.
/// @param regions   a plane of flat regions of the size of `picture`, such as `CracklePlane` makes.
/// @param picture   "RGB".
ChannelSet MarkerOutlines(const MarkerOutlineSettings& settings, const OutlineColor& color, const BytePlane& regions,
                          const ChannelSet& picture);

}  // namespace quentara
