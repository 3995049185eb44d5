/// What the effect needs of the operating system: one small source per system stands behind this header, and nothing
/// else asks which system it is.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace quentara::platform {

/// The number of processors, >= 1.
int ProcessorCount();

/// The high-resolution clock, in ticks since some moment of the past.
std::uint64_t ClockTicks();

/// The function of a thread; its result is the thread's exit code. It lets no exception out.
using ThreadBody = int (*)(void* data, int index);

/// Runs body(data, index) at the same time for every index 0 .. count - 1 and waits for all of them. Index 0 stays on
/// the calling thread, the only one that may talk to the host.
/// @return the exit codes by index. @throws std::bad_alloc before anything has run
std::vector<int> RunThreads(ThreadBody body, void* data, int count);

/// A pointer of each thread's own, null at first. A slot of the system's, not the compiler's thread-local storage: a
/// static one is gone without a trace when the library is unloaded.
class ThreadPointer {
 public:
  /// @throws std::bad_alloc when there is no slot left.
  ThreadPointer();
  ~ThreadPointer();
  ThreadPointer(const ThreadPointer&) = delete;
  ThreadPointer& operator=(const ThreadPointer&) = delete;

  void* Get() const;
  void Set(const void* pointer);

 private:
  std::uint32_t slot_;
};

/// A lock for short stretches, for std::lock_guard.
class CriticalSection {
 public:
  CriticalSection();
  ~CriticalSection();
  void lock();
  void unlock();

 private:
  struct Native;
  const std::unique_ptr<Native> native_;
};

}  // namespace quentara::platform
