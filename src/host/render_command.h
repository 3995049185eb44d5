/// The render command: the host's input world and parameters in, its output world painted.
#pragma once

#include "AE_Effect.h"

namespace Nivra {

/// Renders the layer of params[0] into `output`, which keeps the layer's alpha. Unless the result is 0, `output` is
/// untouched.
/// @return 0, PF_Err_OUT_OF_MEMORY, or what the host's abort or progress answered.
/// @throws anything else that went wrong, once everything is given back to the host.
PF_Err RenderCommand(PF_InData* inData, PF_ParamDef* params[], PF_EffectWorld& output);

}  // namespace Nivra
