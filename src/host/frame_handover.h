/// The border between the host's worlds and the planes of the render core.
///
/// A world has interleaved pixels in the order alpha, red, green, blue: 8 bits each, or 16 bits with white at 32768.
/// Its rows may be padded; padding is neither read nor written. The render core has 8 bits in both cases.
#pragma once

#include "AE_Effect.h"
#include "render/channel_set.h"

namespace Nivra {

/// Fills the buffers of `frame`, which has the size of `world`. A deep sample v becomes v * 255 / 32768, cut off.
void ReadColors(const PF_EffectWorld& world, const quentara::FrameBuffers& frame);

/// Writes red, green and blue of `world`, if it has the size of `frame`; otherwise it stays as it is. A byte b becomes
/// the deep sample b * 32768 / 255, cut off.
void WriteColors(const quentara::FrameBuffers& frame, PF_EffectWorld& world);

/// Gives `output` the alpha of `input`, of the same depth, where both have a pixel.
void CopyAlpha(const PF_EffectWorld& input, PF_EffectWorld& output);

/// output = trunc(share * input + (1 - share) * output) in single precision, for all four channels of worlds of one
/// depth, where both have a pixel.
void BlendWithOriginal(const PF_EffectWorld& input, float share, PF_EffectWorld& output);

}  // namespace Nivra
