#include "render/print_steps.h"

#include "print/duotone.h"

namespace quentara {

void ApplyPrintStages(const RenderSettings& settings, ChannelSet& picture) {
  if (settings.duotone != nullptr) picture = DuotoneShading(*settings.duotone, picture);
}

}  // namespace quentara
