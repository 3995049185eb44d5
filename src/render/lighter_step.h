/// The "Lighter" step of the pipeline, and the form of it that Flat Detailed brings along.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// Brightens the picture by `settings.lighter`. Lighter 1 mixes in a tone of `LighterTone`, up to two thirds, and takes
/// stronger tones from there; Lighter 2 is `LighterValue`. Does nothing at 0, for a tinted foreground, and for Flat
/// Detailed.
void ApplyLighter(const RenderSettings& settings, ChannelSet& picture);

/// The brightened picture that the flat tones of Flat Detailed darken.
/// @param lighter  0..1.
ChannelSet DetailedTone(float lighter, const ChannelSet& picture);

}  // namespace quentara
