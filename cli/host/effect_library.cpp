#include "host/effect_library.h"

#include <dlfcn.h>

#include <filesystem>

#include "errors.h"
#include "program_folder.h"

namespace quentara::cli {

namespace fs = std::filesystem;

std::string DefaultEffectPath() {
  const fs::path programs = ProgramFolder();
  const fs::path beside = programs / "Quentara.so";
  const fs::path installed = programs.parent_path() / "lib" / "quentara" / "Quentara.so";
  for (const fs::path& path : {beside, installed})
    if (fs::exists(path)) return path.string();
  throw EffectError("the effect is neither at " + beside.string() + " nor at " + installed.string() +
                    "; say where it is with --effect");
}

EffectLibrary::EffectLibrary(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) throw EffectError("there is no effect at " + path);
  // Without a slash, dlopen would search the system's libraries instead.
  library_ = dlopen(fs::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  // glibc keeps the text of dlerror per thread.
  if (!library_)
    throw EffectError(path + " is not an effect; it cannot be loaded: " + dlerror());  // NOLINT(concurrency-mt-unsafe)
  entry_ = reinterpret_cast<EffectEntry>(dlsym(library_, "PluginEntry"));
  if (!entry_) {
    dlclose(library_);
    throw EffectError(path + " is not an effect; it has no PluginEntry");
  }
}

EffectLibrary::~EffectLibrary() {
  dlclose(library_);
}

}  // namespace quentara::cli
