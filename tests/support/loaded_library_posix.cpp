#include <dlfcn.h>
#include <malloc.h>

#include <iterator>
#include <stdexcept>

#include "support/loaded_library.h"

namespace quentara {

LoadedLibrary::LoadedLibrary(const std::filesystem::path& path)
    : library_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (library_ == nullptr) throw std::runtime_error(dlerror());
  entry_ = reinterpret_cast<FakeHost::Entry>(dlsym(library_, "PluginEntry"));
  if (entry_ == nullptr) throw std::runtime_error("no PluginEntry");
}

LoadedLibrary::~LoadedLibrary() {
  dlclose(library_);
}

ProcessUse UseOfProcess() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return {static_cast<std::ptrdiff_t>(mallinfo2().uordblks), std::distance(begin(files), end(files))};
}

}  // namespace quentara
