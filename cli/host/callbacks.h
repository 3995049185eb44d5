/// The functions that the effect calls back.
#pragma once

#include "AE_EffectCB.h"
#include "SPBasic.h"

namespace quentara::cli {

/// Fills in every callback that this host offers: parameters, abort and progress, handles, iterate_generic, the C
/// library's functions, and suites. Of the others, those that an effect may call without asking answer
/// PF_Err_INVALID_CALLBACK; the rest stay null.
void InstallCallbacks(PF_InteractCallbacks& interact, PF_UtilCallbacks& utilities, SPBasicSuite& suites);

}  // namespace quentara::cli
