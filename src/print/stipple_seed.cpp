#include "print/stipple_seed.h"

#include <chrono>

namespace quentara {
namespace {

thread_local std::optional<std::uint32_t> fixedSeed;

}  // namespace

std::uint32_t StippleSeed() {
  if (fixedSeed) return *fixedSeed;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

StippleSeedScope::StippleSeedScope(std::uint32_t seed) : former_(fixedSeed) {
  fixedSeed = seed;
}

StippleSeedScope::~StippleSeedScope() {
  fixedSeed = former_;
}

}  // namespace quentara
