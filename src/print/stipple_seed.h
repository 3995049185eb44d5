/// Where Stipple Pattern's specks differ from one render to the next.
#pragma once

#include <cstdint>

namespace quentara {

/// The seed of the next stipple: the low 32 bits of the clock, or what a `StippleSeedScope` says.
std::uint32_t StippleSeed();

/// Fixes the seed of every stipple that the calling thread renders in the life of the scope.
class StippleSeedScope {
 public:
  explicit StippleSeedScope(std::uint32_t seed);
  ~StippleSeedScope();
  StippleSeedScope(const StippleSeedScope&) = delete;
  StippleSeedScope& operator=(const StippleSeedScope&) = delete;

 private:
  const std::uint32_t seed_;
  void* const former_;
};

}  // namespace quentara
