/// Gives the parameters to the host.
#pragma once

#include "host/param_table.h"
#include "host/plugin_nivra.h"

namespace Nivra {

/// Adds every row of the table that the host can show, in order, and counts them in `context.paramCount`.
/// @throws the host's error as a PF_Err, if it refuses a row.
void DefineParams(EffectContext& context);

}  // namespace Nivra
