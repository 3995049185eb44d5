/// Crackle: flat cells with sharp borders, like dried paint.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// The radius of the first pass for a flatness: the flatness itself, but 1 where a single pass with a window of one
/// pixel would do nothing.
inline int FirstCrackleRadius(int flatness, int passes) {
  return flatness == 0 && passes == 1 ? 1 : flatness;
}

/// The BT.709 luma of `picture`, gathered into cells: pass i takes the most frequent value of the window of radius
/// firstRadius + i in the previous pass's result, among those within firstLimit + i of the pixel's unfiltered luma.
/// @param firstRadius  in pixels, >= 0.
/// @param firstLimit   in sample values, >= 0.
/// @param passes       >= 0.
/// @param picture      "RGB".
BytePlane CracklePlane(int firstRadius, int firstLimit, int passes, const ChannelSet& picture);

/// The picture with that luma, after `AtStrength`. Colours keep their hue.
/// @param strength  0..5.
ChannelSet CrackleStyle(int firstRadius, int firstLimit, int passes, float strength, const ChannelSet& picture);

}  // namespace quentara
