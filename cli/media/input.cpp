#include "media/input.h"

#include <filesystem>

#include "media/sequence_pattern.h"
#include "media/still_input.h"
#include "media/video_input.h"

namespace quentara::media {

std::unique_ptr<Input> OpenInput(const std::string& path, const std::optional<FrameRange>& range) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  // A file that has the very name of a pattern is just a file.
  if (!std::filesystem::exists(status))
    if (const auto pattern = SequencePattern::Parse(path)) return OpenSequence(path, *pattern, range);
  if (std::filesystem::is_directory(status))
    throw InputError(path + ": is a folder; name its pictures by a pattern such as " +
                     (std::filesystem::path(path) / "frame.%04d.png").string());
  if (!IsStillFile(path)) return OpenVideo(path, range);
  if (range && (range->First() != 1 || range->Last() != 1))
    throw InputError(path + ": is a single picture, it has frame 1 only");
  return OpenStill(path);
}

}  // namespace quentara::media
