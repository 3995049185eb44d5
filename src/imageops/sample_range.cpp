#include "imageops/sample_range.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <limits>
#include <mutex>

#include "platform/platform.h"
#include "render/bands.h"

namespace quentara {
namespace {

// Floats of one sign have the order of their bits, and whole numbers are compared in vector lanes.
SampleRange RangeOfRun(const float* samples, std::ptrdiff_t count) {
  std::int32_t least = std::numeric_limits<std::int32_t>::max(), largest = 0;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    std::int32_t bits;
    std::memcpy(&bits, samples + i, sizeof bits);
    least = std::min(least, bits);
    largest = std::max(largest, bits);
  }
  SampleRange range;
  std::memcpy(&range.least, &least, sizeof least);
  std::memcpy(&range.largest, &largest, sizeof largest);
  return range;
}

}  // namespace

SampleRange RangeOf(const FloatPlane& plane) {
  assert(plane.numElements() > 0);
  SampleRange range = {plane.data()[0], plane.data()[0]};
  platform::Monitor rangeLock;
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    if (count == 0) return;
    const SampleRange part = RangeOfRun(plane.data() + first, count);
    const std::lock_guard lock(rangeLock);
    range = {std::min(range.least, part.least), std::max(range.largest, part.largest)};
  });
  return range;
}

}  // namespace quentara
