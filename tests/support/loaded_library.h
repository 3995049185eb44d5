/// The effect's library as a host loads it, and what the process uses meanwhile.
#pragma once

#include <cstddef>
#include <filesystem>

#include "support/fake_host.h"

namespace quentara {

class LoadedLibrary {
 public:
  /// @throws std::runtime_error when there is no library with a PluginEntry at the path.
  explicit LoadedLibrary(const std::filesystem::path& path);
  ~LoadedLibrary();
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  FakeHost::Entry entry() const { return entry_; }

 private:
  void* library_;
  FakeHost::Entry entry_;
};

/// Bytes of memory that the process has in use, and open handles (file descriptors).
struct ProcessUse {
  std::ptrdiff_t bytes;
  std::ptrdiff_t handles;
};
ProcessUse UseOfProcess();

}  // namespace quentara
