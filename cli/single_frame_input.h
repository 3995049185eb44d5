/// One frame of an input, as a picture.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "media/input.h"

namespace quentara::cli {

/// Reads one frame of a picture, a sequence or a video, and gives it as the only frame of an input that is a picture:
/// upright, as a player would show the video.
/// @param number  of the frame as media::Frame counts them; none for the first.
/// @throws media::InputError, also when there is no such frame.
std::unique_ptr<media::Input> OpenSingleFrame(const std::string& path, const std::optional<std::int64_t>& number);

}  // namespace quentara::cli
