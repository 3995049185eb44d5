/// Laying a one-channel mask over a picture: the shared ending of the outlines and of the stipple pattern.
///
/// An outline mask is a `ChannelSet` of mode "L" of the picture's size: 255 means no line, 0 a full line, and what lies
/// between is coverage. Pictures are "RGB"; all planes that meet are of one size. Every byte result is rounded half up.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

/// Which road a colour takes: black lines darken the picture, lines of any other colour fade it towards the colour.
enum class OutlineColorClass : int { Colored = 0, Grey = 1, Black = 2 };

/// The colour of a frame's outlines, 0..255 a channel, unrounded.
struct OutlineColor {
  float red;
  float green;
  float blue;
  OutlineColorClass colorClass;
};

/// @param color  0..1 a channel.
OutlineColor MakeOutlineColor(const Color& color);

/// The picture with lines of the colour laid over it.
///
/// Black: the hard lines are `DarkenByMask` of the mask as it is, the soft ones the picture times the smoothed mask,
/// and `antialias` is the share of the soft ones. Any other colour: `OverlayOutlineColor` of the mask, in which
/// `antialias` is the share of the smoothed mask. The smoothed mask is one pass of `BinomialSmooth`.
/// @param antialias     0..1; a stage without that parameter passes 0.
/// @param transparency  0..1, the share of the picture without lines.
ChannelSet CompositeOutlineMask(const ChannelSet& picture, const ChannelSet& mask, float antialias, float transparency,
                                const OutlineColor& color);

/// Each plane of the picture, faded to the colour's channel where the mask has lines.
ChannelSet OverlayOutlineColor(const ChannelSet& picture, const ChannelSet& mask, const OutlineColor& color);

/// mix * min(picture, mask) + (1 - mix) * picture, in single precision.
/// @param mask  "L", used for every plane, or "RGB", plane by plane.
/// @param mix   0..1; at 1 the minimum itself.
ChannelSet DarkenByMask(const ChannelSet& picture, const ChannelSet& mask, float mix);

/// antialias * `MultiplyPlanes`(picture, smoothMask) + (1 - antialias) * hard, in single precision.
/// @param hard       the same picture with hard lines; at an antialias of 1 it is not read.
/// @param antialias  0..1.
ChannelSet BlendDarkened(const ChannelSet& picture, const BytePlane& smoothMask, ChannelSet hard, float antialias);

/// a * b / 255.
BytePlane MultiplyPlanes(const BytePlane& a, const BytePlane& b);

/// plane * m + value * (1 - m) with m = mask / 255, in single precision.
/// @param value  0..255.
BytePlane FadePlaneToValue(const BytePlane& plane, float value, const BytePlane& mask);

/// An S-curve: the soft-light blend of a sample with itself, 255 * (3 * s^2 - 2 * s^3) for s = sample / 255.
/// @param sample  0..255.
inline float SoftLightSelf(float sample) {
  const float multiplied = sample * sample / 255.0f;
  const float screened = 255.0f - (255.0f - sample) * (255.0f - sample) / 255.0f;
  return ((255.0f - sample) * multiplied + sample * screened) / 255.0f;
}

}  // namespace quentara
