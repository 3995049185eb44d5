/// Maps from one byte to another, as tables of all 256 results.
#pragma once

#include <array>
#include <cstddef>

#include "render/channel_set.h"

namespace quentara {

using ByteMap = std::array<unsigned char, 256>;

/// The table of `function`, which takes an int 0..255 and gives a byte.
template <class Function>
ByteMap MakeByteMap(const Function& function) {
  ByteMap map;
  for (int sample = 0; sample < 256; ++sample) map[static_cast<std::size_t>(sample)] = function(sample);
  return map;
}

/// The power curve that keeps 0 and 255: sample -> trunc(255 * sample^exponent / 255^exponent + 0.5).
///
/// One form computes in double precision, the other in single precision with each power the double one, rounded.
/// Where 255 * 255^exponent is beyond the range of a double, the equal form 255 * (sample / 255)^exponent stands in.
/// @param exponent  >= 0; the single-precision form takes up to 15. At 0 every sample, 0 included, becomes 255.
ByteMap PowerMap(double exponent);
ByteMap SinglePowerMap(float exponent);

/// sample -> 255 - sample.
ByteMap NegativeMap();

/// result(y, x) = map[plane(y, x)].
BytePlane MapBytes(const ByteMap& map, const BytePlane& plane);

/// The same for every plane of a picture, or in place.
ChannelSet MapBytes(const ByteMap& map, const ChannelSet& picture);
void MapBytesOf(ChannelSet& picture, const ByteMap& map);

}  // namespace quentara
