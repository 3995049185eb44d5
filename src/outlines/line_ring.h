/// The ring of a pixel's eight neighbours, and the template that thins and thickens lines.
#pragma once

#include <array>
#include <cstddef>

namespace quentara {

/// The neighbours of a pixel clockwise from the top left, as offsets in a plane of rows of `stride` samples.
using Ring = std::array<std::ptrdiff_t, 8>;

inline Ring RingOffsets(std::ptrdiff_t stride) {
  return {-stride - 1, -stride, -stride + 1, 1, stride + 1, stride, stride - 1, -1};
}

/// The six ring neighbours that a template looks at: three in a row that must be set and the three opposite that must
/// be clear. There are eight templates; each is the one before, turned clockwise by one place.
struct LineTemplate {
  std::array<std::ptrdiff_t, 3> set;
  std::array<std::ptrdiff_t, 3> clear;
};

inline std::array<LineTemplate, 8> LineTemplates(std::ptrdiff_t stride) {
  const Ring ring = RingOffsets(stride);
  std::array<LineTemplate, 8> templates;
  for (std::size_t turn = 0; turn < templates.size(); ++turn)
    for (std::size_t i = 0; i < 3; ++i) {
      templates[turn].set[i] = ring[(turn + i) % 8];
      templates[turn].clear[i] = ring[(turn + i + 4) % 8];
    }
  return templates;
}

}  // namespace quentara
