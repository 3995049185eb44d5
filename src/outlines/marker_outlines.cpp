#include "outlines/marker_outlines.h"

#include <algorithm>
#include <cassert>

#include "blur/small_smooth.h"
#include "outlines/marker_lines.h"
#include "render/bands.h"

namespace quentara {

ChannelSet MarkerOutlines(const MarkerOutlineSettings& settings, const OutlineColor& color, const BytePlane& regions,
                          const ChannelSet& picture) {
  assert(SameSize(regions, picture.planes(0)));
  const BytePlane lines(MarkerLines(settings.thickness, settings.minimumDifference, regions));
  BytePlane mask(FilterInBands(
      1, [](const BytePlane& band) { return BoxSmooth3(1, band); }, lines));
  ForSampleBands(mask, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    unsigned char* const samples = mask.data() + first;
    std::transform(samples, samples + count, lines.data() + first, samples,
                   [](unsigned char smooth, unsigned char line) { return std::min(smooth, line); });
  });
  return CompositeOutlineMask(picture, ChannelSet("L", picture.width(), picture.height(), MultiplyPlanes(mask, mask)),
                              settings.antialias, settings.transparency, color);
}

}  // namespace quentara
