#include "render/stage_availability.h"

#include <string>

#include "render/pipeline.h"
#include "render/stage_predicates.h"

namespace quentara {
namespace {

void Refuse(bool wanted, const char* stage) {
  if (wanted) throw RenderPipeline::UnavailableStage(std::string(stage) + " is not available in this version.");
}

}  // namespace

void RequireBuiltStages(const RenderSettings& settings) {
  Refuse(Visible(settings.stipplePattern), "Stipple Pattern");
}

}  // namespace quentara
