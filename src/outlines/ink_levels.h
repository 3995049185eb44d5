/// What the outlines drawn in ink share: a picture whose skin tones are bent to one grey, and the cut of its lines
/// there.
#pragma once

#include "imageops/skin_tones.h"
#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// How a line drawing is inked.
struct Ink {
  float level;     ///< 0..254: the grey for the skin tones, and where the lines are cut
  float exponent;  ///< 1..100: how far lines are darkened before the cut
};

/// level = 340 * t up to t = 0.5, then 170 + 170 * (t - 0.5), with t = 1 - sensitivity, but never 255;
/// exponent = 10^(2 * strength). All in single precision.
/// @param sensitivity, strength  0..1.
Ink InkLevels(float sensitivity, float strength);

/// The picture bent by the power curve (`PowerMap`) that takes the median luma of its skin tones to `level`.
///
/// The median m is that of `ToneLevels` over the BT.601 luma, the exponent ln(level / 255) / (ln m - ln 255) in single
/// precision, with a level of at least 1e-8. A picture with m = 255 is white throughout and stays as it is.
/// @param level  0..254.
/// @param image  "RGB".
/// @return an "RGB" picture.
ChannelSet ToneToLevel(float level, const PointList& skinPoints, const ChannelSet& image);

/// The picture in which ink lines are looked for: `ToneToLevel` of `source`, then blurred in luma.
/// @param blur  null for none.
ChannelSet InkTones(float level, const PointList& skinPoints, const BlurSettings* blur, const ChannelSet& source);

/// Cuts soft lines hard: with v the line mask bent by `PowerMap`(ink.exponent) and then by the S-curve of
/// `SoftLightSelf`, rounded after each, the result is 255 where v > floor(ink.level) + 0.5, else 0.
/// @param lines  an outline mask.
/// @return a mask of mode "L".
ChannelSet InkThreshold(const Ink& ink, const ChannelSet& lines);

}  // namespace quentara
