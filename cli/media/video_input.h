/// Video as an input.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "media/input.h"

namespace quentara::media {

/// Opens a video of any format that FFmpeg reads. Frames are counted from 1 in the order they are shown.
/// @throws InputError, also when the container states fewer frames than the range asks for.
std::unique_ptr<Input> OpenVideo(const std::string& path, const std::optional<FrameRange>& range);

}  // namespace quentara::media
