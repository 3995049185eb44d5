/// Greying out the parameters that do nothing under the present settings.
#pragma once

#include "AE_Effect.h"

namespace Nivra {

/// Shows every row of the host's list as `ParamEnabled` says, through the host's "PF Param Utils Suite". Where the host
/// has no suite or the suite fails, the rows stay as they are. Throws nothing.
/// @param suites  whether the host's suites may be used.
void UpdateParamsUi(PF_InData* inData, PF_ParamDef* params[], bool suites);

}  // namespace Nivra
