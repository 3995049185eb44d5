/// What goes wrong with media files. Each message is one line in plain English that names the file.
#pragma once

#include <stdexcept>

namespace quentara::media {

/// The input is missing, damaged, of a kind that is not read, or lacks frames that were asked for.
struct InputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The output is refused (it exists, is the input, cannot hold this media), or writing it failed.
struct OutputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace quentara::media
