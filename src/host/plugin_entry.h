/// The one function that the library exports.
#pragma once

#include "AE_Effect.h"

extern "C" PF_Err PluginEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                              PF_LayerDef* output, void* extra);
