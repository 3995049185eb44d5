/// A host that knows how much memory a render holds at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <new>

#include "render/standalone_host.h"

namespace quentara {

/// Bytes in use and the most that were in use at once.
class PeakCount {
 public:
  void Add(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    peak_ = std::max(peak_, current_ += bytes);
  }
  void Remove(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    current_ -= bytes;
  }
  std::size_t peak() const { return peak_; }

 private:
  std::mutex mutex_;
  std::size_t current_ = 0;
  std::size_t peak_ = 0;
};

class CountingHost : public StandaloneHost {
 public:
  using StandaloneHost::StandaloneHost;

  void* Allocate(std::size_t bytes) override {
    auto* const block = static_cast<std::size_t*>(StandaloneHost::Allocate(bytes + kHeader));
    *block = bytes;
    count_.Add(bytes);
    return reinterpret_cast<char*>(block) + kHeader;
  }

  void Free(void* pointer) override {
    if (pointer == nullptr) return;
    void* const block = static_cast<char*>(pointer) - kHeader;
    count_.Remove(*static_cast<std::size_t*>(block));
    StandaloneHost::Free(block);
  }

  std::size_t peak() const { return count_.peak(); }

 private:
  static constexpr std::size_t kHeader = 16;  // keeps the alignment

  PeakCount count_;
};

}  // namespace quentara
