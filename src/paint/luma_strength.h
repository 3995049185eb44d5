/// The "Strength" that several paint styles share: how far a painted luma goes from the one that was there.
#pragma once

#include "render/plane.h"

namespace quentara {

/// In single precision, rounded half up:
///   strength < 1: strength * painted + (1 - strength) * luma, a mix;
///   strength = 1: `painted`;
///   strength > 1: luma + strength * (painted - luma), limited to 0..255, the change exaggerated.
/// @param strength  >= 0; 0 gives `luma` back.
/// @param luma, painted  of one size.
/// @return same size; it may share the samples of `painted`.
BytePlane AtStrength(float strength, const BytePlane& luma, const BytePlane& painted);

}  // namespace quentara
