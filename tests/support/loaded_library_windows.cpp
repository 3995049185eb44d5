#include <windows.h>
// After windows.h.
#include <malloc.h>

#include <stdexcept>

#include "support/loaded_library.h"

namespace quentara {

LoadedLibrary::LoadedLibrary(const std::filesystem::path& path) : library_(LoadLibraryW(path.c_str())) {
  if (library_ == nullptr) throw std::runtime_error("LoadLibrary: error " + std::to_string(GetLastError()));
  const FARPROC function = GetProcAddress(static_cast<HMODULE>(library_), "PluginEntry");
  entry_ = reinterpret_cast<FakeHost::Entry>(reinterpret_cast<void*>(function));
  if (entry_ == nullptr) throw std::runtime_error("no PluginEntry");
}

LoadedLibrary::~LoadedLibrary() {
  FreeLibrary(static_cast<HMODULE>(library_));
}

ProcessUse UseOfProcess() {
  ProcessUse use{};
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(GetProcessHeap());
  while (HeapWalk(GetProcessHeap(), &entry))
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) use.bytes += static_cast<std::ptrdiff_t>(entry.cbData);
  HeapUnlock(GetProcessHeap());
  _HEAPINFO block{};
  while (_heapwalk(&block) == _HEAPOK)
    if (block._useflag == _USEDENTRY) use.bytes += static_cast<std::ptrdiff_t>(block._size);
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  use.handles = static_cast<std::ptrdiff_t>(handles);
  return use;
}

}  // namespace quentara
