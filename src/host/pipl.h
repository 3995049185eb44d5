/// The description of the effect that a host reads from the library's resources, without running it.
#pragma once

#include <cstdint>
#include <vector>

namespace Nivra {

/// The bytes of the "PIPL" resource: a 16-bit version 1, a 32-bit 0, the 32-bit count of properties, and the
/// properties. Each has the vendor "8BIM", a key, a 32-bit id 0, the 32-bit length of its value, and the value, padded
/// with zeros to a multiple of four. Everything is little-endian, four-character codes among it.
std::vector<std::uint8_t> MakePipl();

}  // namespace Nivra
