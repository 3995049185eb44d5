/// The host's commands.
#pragma once

#include "AE_Effect.h"

namespace Nivra {

/// Carries out `command`; those that the effect has no use for give 0. Lets no exception out: one that is neither out
/// of memory nor a stop gives PF_Err_INTERNAL_STRUCT_DAMAGED and leaves its text in out_data->return_msg, for the host
/// to show. Keeps nothing between calls, which may come on several threads at once.
PF_Err Dispatch(PF_Cmd command, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef* output,
                void* extra) noexcept;

/// Copies an about text for the host that shows it as plain ASCII: 0x99 becomes "(R)" and 0xA9 "(C)". Cut off to fit.
void CopyAsAscii(const char* text, A_char (&message)[PF_MAX_EFFECT_MSG_LEN + 1]);

}  // namespace Nivra
