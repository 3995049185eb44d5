/// Which stages this version can run.
#pragma once

#include "render/settings.h"

namespace quentara {

/// @throws RenderPipeline::UnavailableStage, naming the stage, if the settings ask for one that is not built yet: a
/// picture without it must not be handed over as if it had been done.
void RequireBuiltStages(const RenderSettings& settings);

}  // namespace quentara
