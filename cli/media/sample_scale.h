/// The 16-bit samples of files, 0..65535, and those of deep frames, 0..32768: to nearest, so that white stays white.
#pragma once

#include <algorithm>
#include <cstdint>

#include "media/frame.h"

namespace quentara::media {

inline std::uint16_t HostScale(std::uint32_t sample) {
  return static_cast<std::uint16_t>((sample * kDeepWhite + 32767u) / 65535u);
}

inline std::uint16_t FileScale(std::uint32_t sample) {
  return static_cast<std::uint16_t>((std::min<std::uint32_t>(sample, kDeepWhite) * 65535u + kDeepWhite / 2) /
                                    kDeepWhite);
}

}  // namespace quentara::media
