/// Smoothing that keeps edges: how a picture is cleaned of grain and small detail before it is painted or outlined.
#pragma once

#include "render/channel_set.h"
#include "render/settings.h"

namespace quentara {

enum BlurMode {
  LumaMode,    ///< only the BT.709 luma is blurred, then put back by `ReplaceLuma`: an edge in colour alone stays
  ChannelMode  ///< each channel is blurred on its own
};

/// @param settings  `type` and `quality` choose the filter. With r = radius and T = thresh:
///
/// | type       | quality | filter of a pass                         | passes | range around           |
/// |------------|---------|------------------------------------------|--------|------------------------|
/// | Gaussian   | High    | range mean, square of side 2r + 1        | 3      | the plane as it came   |
/// | Gaussian   | Fast    | range mean, line, vertical then across   | 4      | the plane as it came   |
/// | Box        | High    | range mean, square of side 2r + 1        | 2      | the last pass's result |
/// | Box        | Fast    | range mean, line, vertical then across   | 2      | the last pass's result |
/// | Supersmart | either  | `SupersmartBlur`, with its three numbers |        |                        |
///
/// `BlurType::None` is not a blur: a caller has no settings then.
/// @param image  "RGB" or "L". For "L" both modes are one.
/// @return a picture of the mode and size of `image`.
/// @throws Plugin::Interrupted; the stop is checked after every pass.
ChannelSet BlurImage(const BlurSettings& settings, BlurMode mode, const ChannelSet& image);

}  // namespace quentara
