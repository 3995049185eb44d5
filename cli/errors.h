/// What ends a command early, beside the errors of media. Each message is one line in plain English.
#pragma once

#include <stdexcept>

namespace quentara::cli {

/// The command line asks for something that does not exist or cannot be.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The effect cannot be loaded, is none, or answered with an error.
struct EffectError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The effect stopped because the host's abort or progress callback told it to.
struct Cancelled {};

/// Exit statuses; an interrupted run ends with 128 + signal.
enum ExitStatus { kSuccess = 0, kUsage = 2, kInput = 3, kOutput = 4, kEffect = 5 };

}  // namespace quentara::cli
