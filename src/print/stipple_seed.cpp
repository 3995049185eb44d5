#include "print/stipple_seed.h"

#include "platform/platform.h"

namespace quentara {
namespace {

platform::ThreadPointer fixedSeed;

}  // namespace

std::uint32_t StippleSeed() {
  if (const void* const fixed = fixedSeed.Get()) return *static_cast<const std::uint32_t*>(fixed);
  return static_cast<std::uint32_t>(platform::ClockTicks());
}

StippleSeedScope::StippleSeedScope(std::uint32_t seed) : seed_(seed), former_(fixedSeed.Get()) {
  fixedSeed.Set(&seed_);
}

StippleSeedScope::~StippleSeedScope() {
  fixedSeed.Set(former_);
}

}  // namespace quentara
