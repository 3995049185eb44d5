/// What the adapter needs of the operating system where the host has nothing to offer.
#pragma once

#include <memory>
#include <vector>

namespace Nivra::Host::System {

/// The number of processors, >= 1.
int ProcessorCount();

/// The function of a thread; its result is the thread's exit code. It lets no exception out.
using ThreadBody = int (*)(void* data, int index);

/// Runs body(data, index) at the same time for every index 0 .. count - 1 and waits for all of them. Index 0 stays on
/// the calling thread, the only one that may talk to the host.
/// @return the exit codes by index. @throws std::bad_alloc before anything has run
std::vector<int> RunThreads(ThreadBody body, void* data, int count);

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

}  // namespace Nivra::Host::System
