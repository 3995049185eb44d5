/// Which parameters do something under the present settings. The others are greyed out; none changes its value.
#pragma once

#include "AE_Effect.h"

namespace Nivra {

/// Whether the parameter at `index` of the host's list has an effect: 1 if so, 0 if not, -1 from the last parameter on,
/// which mixes the result with the original and is never greyed.
/// @param params     the host's list, beginning with the input layer.
/// @param hasGroups  whether the list has entries for group rows.
/// @param index      >= 1.
int ParamEnabled(const PF_ParamDef* const* params, bool hasGroups, int index);

}  // namespace Nivra
