/// Video as an output.
#pragma once

#include <memory>
#include <string>

#include "media/output.h"

namespace quentara::media {

/// @param extension  of `path`, in lower case: .mp4, .m4v, .mov, .mkv, .avi or .webm.
std::unique_ptr<Output> OpenVideoOutput(const std::string& path, const std::string& extension, const Input& input,
                                        const OutputOptions& options);

}  // namespace quentara::media
