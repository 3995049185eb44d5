/// Single pictures and numbered sequences as inputs.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "media/input.h"
#include "media/sequence_pattern.h"

namespace quentara::media {

/// Whether the file begins like a picture of a format that is read here.
/// @throws InputError if it cannot be read.
bool IsStillFile(const std::string& path);

std::unique_ptr<Input> OpenStill(const std::string& path);

/// @throws InputError if the folder has none of the frames, or lacks some of the range.
std::unique_ptr<Input> OpenSequence(const std::string& path, const SequencePattern& pattern,
                                    const std::optional<FrameRange>& range);

}  // namespace quentara::media
