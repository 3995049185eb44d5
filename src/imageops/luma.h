/// Luma planes of pictures, and putting a changed luma back into colour.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// BT.709 luma: trunc(0.2126 * R + 0.7152 * G + 0.0722 * B + 0.5), in single precision and this order of terms. For a
/// picture that is not "RGB", a copy of plane 0. As a plane, or as an "L" picture.
BytePlane LumaPlane709(const ChannelSet& picture);
ChannelSet LumaImage709(const ChannelSet& picture);

/// BT.601 luma: trunc(0.299 * R + 0.587 * G + 0.114 * B + 0.5), otherwise the same.
BytePlane LumaPlane601(const ChannelSet& picture);
ChannelSet LumaImage601(const ChannelSet& picture);

/// max(R, G, B) of an "RGB" picture, as a plane, or as an "L" picture.
BytePlane BrightestPlane(const ChannelSet& picture);
ChannelSet BrightestImage(const ChannelSet& picture);

/// Gives each pixel a new luma and keeps its hue as far as the range of a byte allows.
///
/// Each channel c moves by newLuma - oldLuma. With n the least and x the largest of the three moved channels and l the
/// new luma: when n < 0, each c becomes trunc(l + l * (c - l) / (l - n) + 0.5), which brings the least to 0; then, when
/// x > 255, each becomes trunc(l + (255 - l) * (c - l) / (x - l) + 0.5), which brings the largest to 255. Both steps
/// are in single precision and pull the channels towards l by one factor.
/// @param picture  "RGB".
/// @param oldLuma, newLuma  planes of the size of `picture`; where they are equal the pixel stays.
/// @return an "RGB" picture.
ChannelSet ReplaceLuma(const ChannelSet& picture, const BytePlane& oldLuma, const BytePlane& newLuma);

}  // namespace quentara
