#include "media/output.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "media/still_output.h"
#include "media/video_output.h"

namespace quentara::media {

std::unique_ptr<Output> OpenOutput(const std::string& path, const Input& input, const OutputOptions& options) {
  if (const std::optional<StillFormat> format = StillFormatForName(path))
    return OpenStillOutput(path, *format, input, options.overwrite);
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return std::tolower(c); });
  for (const char* known : {".mp4", ".m4v", ".mov", ".mkv", ".avi", ".webm"})
    if (extension == known) return OpenVideoOutput(path, extension, input, options);
  throw OutputError(path + ": write a video (.mp4 .m4v .mov .mkv .avi .webm) or pictures (.png .jpg .tif .ppm)");
}

}  // namespace quentara::media
