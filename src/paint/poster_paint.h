/// Poster Paint: few tones with hard steps where the picture is busy, and soft ones where it is flat.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Posterises the value, max(R, G, B), in two ways and mixes them, all in single precision, rounded half up where not
/// said otherwise:
///   P = blend * `EvenLevels` + (1 - blend) * `EqualCountLevels`; at a blend of 0 or 1 the one kind alone.
///   With a contrast above 0, P = contrast * C + (1 - contrast) * P with C = trunc((P - lo) * 255 / (hi - lo)) for the
///   least and largest sample of P, 0 where they are equal.
///   With A the `DetailMask` of the value and S the `DiagonalDiffusion` of P: result = P * A / 255 + S * (1 - A / 255).
/// Hue and saturation stay as they are.
/// @param equalCountLevels, evenLevels  >= 2.
/// @param blend, foreground, contrast   0..1.
/// @param rounds   of the diffusion, >= 0.
/// @param picture  "RGB", not empty.
ChannelSet PosterPaintStyle(int equalCountLevels, int evenLevels, float blend, float foreground, int rounds,
                            float contrast, const ChannelSet& picture);

}  // namespace quentara
