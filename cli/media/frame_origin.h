/// What a frame carries from its source to an output beside its pixels.
#pragma once

#include <cstdint>
#include <vector>

namespace quentara::media {

/// How densely a picture's pixels lie, as far as its file says. Both 0: not said.
struct Resolution {
  double x = 0;  ///< pixels a metre, or when not `absolute` a number that only has a meaning beside y
  double y = 0;
  bool absolute = true;
};

struct FrameOrigin {
  bool hasAlpha = false;
  std::vector<std::uint8_t> iccProfile;   ///< of RGB pictures; empty if there is none
  std::vector<std::uint16_t> exactAlpha;  ///< of 16-bit pictures: the file's alpha samples, 0..65535; else empty
  Resolution resolution;

  std::int64_t time = 0;      ///< of a video frame: when it is shown, in the time base of its stream
  std::int64_t duration = 0;  ///< of a video frame: how long, in the same unit; 0 for pictures
  bool interlaced = false;
  bool topFieldFirst = false;
};

}  // namespace quentara::media
