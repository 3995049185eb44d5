/// Conte Outlines: strokes of a dark and a light crayon along the dark and the bright edges of a picture.
#pragma once

#include "outlines/compositing.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// The picture with the soft lines (`SoftLineMerge`) of `outlineSource` drawn in `color`, and those of its negative
/// drawn in the light colour of the settings, each over the same picture, merged by `CrayonMerge`. Both crayons fade
/// the picture towards their colour, black as any other.
/// @param outlineSource  "RGB" or "L", of the size of `picture`.
/// @param picture        "RGB".
/// @throws Plugin::Interrupted; `ThickLineMask` and `CrayonMerge` check for a stop.
ChannelSet ConteOutlines(const ConteOutlineSettings& settings, const OutlineColor& color,
                         const ChannelSet& outlineSource, const ChannelSet& picture);

/// Merges two drawings over one picture: each counts by how far it moved the BT.601 luma of the pixel.
///
/// With d and l the distances from the picture's luma to that of the dark and of the light drawing and w = d / (d + l),
/// a channel becomes w * dark + (1 - w) * light, in single precision, rounded half up; where both are 0, dark stays.
/// Checks for a stop at the start.
/// @param dark  one drawing, and the result. All three are "RGB" of one size.
void CrayonMerge(ChannelSet& dark, const ChannelSet& light, const ChannelSet& picture);

}  // namespace quentara
