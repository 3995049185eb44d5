/// Pencil-soft lines, merged from two line masks of neighbouring thickness: what Soft and Conte Outlines share.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Two line masks and the powers that darken them.
struct SoftLines {
  float exponent;       ///< of `lines`, 16/3..12
  float thickExponent;  ///< of `thickLines`, 1..11
  ChannelSet lines;     ///< a mask of mode "L"
  ChannelSet thickLines;
};

/// `ThickLineMask` at `thickness` and at `thickness` + 1; with w = 1 - strength, in single precision, the exponents are
/// 12 - w * 20 / 3 and 11 - w * 10.
/// @param strength   0..1.
/// @param thickness  radius in pixels, >= 1.
/// @param quality    a `Quality`.
SoftLines FindSoftLines(float strength, int thickness, int quality, const ChannelSet& image);

/// The mask of the lines, an "L" picture; all in single precision, rounded half up in the end.
///
/// With P = `SoftLightSelf`(255 * lines^exponent / 255^exponent) and Q the same power curve of the thick lines but
/// without the S-curve, W = Q / 2 + P / 2; with S = `BoxSmooth3Float`(1, W) and t = 1 - W / 255 the result is
/// W * t + S * (1 - t): the dark cores of the lines stay sharp.
ChannelSet SoftLineMerge(const SoftLines& soft);

/// The lines multiplied into the value of HSV; hue and saturation stay. The new value is made as the mask is, from
/// V * P / 255 and V * Q / 255 in place of P and Q. It stays unrounded for a host with one worker and is rounded half
/// up to a byte for one with several.
/// @param picture  "RGB", of the size of the masks.
/// @return an "RGB" picture.
ChannelSet SoftLineOnValue(const SoftLines& soft, const ChannelSet& picture);

}  // namespace quentara
