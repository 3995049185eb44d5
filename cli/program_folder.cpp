#include "program_folder.h"

namespace quentara::cli {

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

}  // namespace quentara::cli
