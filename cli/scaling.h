/// Reduced frames for previews.
#pragma once

#include "host/effect.h"
#include "media/frame.h"

namespace quentara::cli {

/// A width or height at the fraction of its size, rounded up.
int ReducedLength(int length, const Downsampling& downsampling);

/// The frame at the fraction of its size, rounded up: each pixel is the mean of the area it covers, weighted by alpha.
media::Frame Reduced(const media::Frame& frame, const Downsampling& downsampling);

/// The frame at another size: each pixel is the mean of the area it covers, weighted by alpha. Meant for smaller sizes.
media::Frame Resized(const media::Frame& frame, int width, int height);

}  // namespace quentara::cli
