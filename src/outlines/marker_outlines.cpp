#include "outlines/marker_outlines.h"

#include <algorithm>
#include <cassert>

#include "blur/small_smooth.h"
#include "outlines/marker_lines.h"

namespace quentara {

ChannelSet MarkerOutlines(const MarkerOutlineSettings& settings, const OutlineColor& color, const BytePlane& regions,
                          const ChannelSet& picture) {
  assert(SameSize(regions, picture.planes(0)));
  const BytePlane lines(MarkerLines(settings.thickness, settings.minimumDifference, regions));
  BytePlane mask(BoxSmooth3(1, lines));
  std::transform(mask.data(), mask.data() + mask.numElements(), lines.data(), mask.data(),
                 [](unsigned char smooth, unsigned char line) { return std::min(smooth, line); });
  return CompositeOutlineMask(picture, ChannelSet("L", picture.width(), picture.height(), MultiplyPlanes(mask, mask)),
                              settings.antialias, settings.transparency, color);
}

}  // namespace quentara
