#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>

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
  pthread_key_t slot{};
  pthread_key_create(&slot, nullptr);
  pthread_key_delete(slot);
  return {static_cast<std::ptrdiff_t>(mallinfo2().uordblks), std::distance(begin(files), end(files)),
          static_cast<std::ptrdiff_t>(slot)};
}

}  // namespace quentara
