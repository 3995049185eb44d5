/// Where the program's own files are found.
#pragma once

#include <filesystem>

namespace quentara::cli {

/// The folder that the running program lies in, links followed.
std::filesystem::path ProgramFolder();

}  // namespace quentara::cli
