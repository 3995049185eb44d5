#include "paint/crackle.h"

#include <cassert>

#include "imageops/banded_filters.h"
#include "imageops/luma.h"
#include "paint/luma_strength.h"

namespace quentara {
namespace {

BytePlane GatherCells(int firstRadius, int firstLimit, int passes, const BytePlane& luma) {
  assert(firstRadius >= 0 && firstLimit >= 0 && passes >= 0);
  BytePlane cells(luma);  // until a pass replaces it
  for (int pass = 0; pass < passes; ++pass) {
    cells.reference(RangeModeInBands(firstRadius + pass, luma, cells, firstLimit + pass));
    Plugin::CheckStop();
  }
  return cells;
}

}  // namespace

BytePlane CracklePlane(int firstRadius, int firstLimit, int passes, const ChannelSet& picture) {
  return GatherCells(firstRadius, firstLimit, passes, LumaPlane709(picture));
}

ChannelSet CrackleStyle(int firstRadius, int firstLimit, int passes, float strength, const ChannelSet& picture) {
  const BytePlane luma(LumaPlane709(picture));
  const BytePlane cells(GatherCells(firstRadius, firstLimit, passes, luma));
  return ReplaceLuma(picture, luma, AtStrength(strength, luma, cells));
}

}  // namespace quentara
