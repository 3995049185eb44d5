/// The outlines and patterns of the pipeline, in their order: a later one lies over an earlier one.
#pragma once

#include "imageops/skin_tones.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// What is known of the tones of a frame; empty where no stage asks for it.
struct FrameTones {
  PointList skinPoints;
  Tones levels = {0.0f, 0.0f};  ///< of the largest channel at the skin points
};

/// What the outlines are made from.
struct OutlineInputs {
  const ChannelSet& source;
  const ChannelSet& outlineSource;  ///< the source, blurred for the outlines
  const FrameTones& tones;
  const BytePlane* crackleLines;  ///< the luma that Crackle painted, if Marker Outlines is to follow it; else null
};

/// Lays every visible outline over the picture and reports 7, 8 and 9 on the way.
void ApplyOutlines(const RenderSettings& settings, const OutlineInputs& inputs, ChannelSet& picture);

}  // namespace quentara
