/// Posterising: dividing the values of a plane into levels.
#pragma once

#include <vector>

#include "imageops/byte_map.h"
#include "imageops/histogram.h"

namespace quentara {

/// Level 0 holds the samples up to and including thresholds[0], level j + 1 those above thresholds[j] up to and
/// including thresholds[j + 1], and the last level all above. A level's value is the mean of the samples counted in it,
/// floor(sum / count + 0.5) in single precision, and 0 for a level without samples.
struct LevelSet {
  std::vector<int> thresholds;        ///< one less than levels, never falling
  std::vector<unsigned char> values;  ///< one for each level
};

/// Levels of about equally many samples, floor(samples / count + 0.5) each: from below, a level closes with the value
/// that gives it its share, however full that last bin is. The levels behind get what is left, which may be nothing.
/// @param histogram  of a plane that is not empty.
/// @param count      of levels, >= 2.
LevelSet EqualCountLevels(const Histogram& histogram, int count);

/// Levels of equal width: thresholds[i] = floor(255 * (i + 1) / count + 0.5).
LevelSet EvenLevels(const Histogram& histogram, int count);

/// Each sample's level's value.
ByteMap MapToLevels(const LevelSet& levels);

}  // namespace quentara
