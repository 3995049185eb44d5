#include "render/print_steps.h"

#include "print/duotone.h"
#include "print/halftone.h"
#include "render/stage_predicates.h"

namespace quentara {

void ApplyPrintStages(const RenderSettings& settings, ChannelSet& picture) {
  if (settings.duotone != nullptr) picture = DuotoneShading(*settings.duotone, picture);
  if (Visible(settings.halftone)) picture = HalftonePattern(*settings.halftone, picture);
}

}  // namespace quentara
