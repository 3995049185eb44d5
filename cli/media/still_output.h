/// Single pictures and numbered sequences as outputs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media/output.h"
#include "media/still.h"

namespace quentara::media {

/// @param path  of one picture or a pattern.
std::unique_ptr<Output> OpenStillOutput(const std::string& path, StillFormat format, const Input& input,
                                        bool overwrite);

/// Refuses output files that exist, unless `overwrite`, or that are among the input's.
/// @throws OutputError
void RefuseExisting(const std::vector<std::string>& paths, const Input& input, bool overwrite);

}  // namespace quentara::media
