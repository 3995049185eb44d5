/// Threads that stay for the next parallel step.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "platform/platform.h"

namespace quentara::platform {

/// The calling thread and others that begin when a step first needs them, wait for the next one and end with this
/// object: a render has dozens of steps, and to begin a thread takes as long as the shortest of them.
class WorkerThreads {
 public:
  /// Its result is kept for the caller of `Run`. It lets no exception out.
  using Body = int (*)(void* data, int index);

  WorkerThreads();
  ~WorkerThreads();
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;

  /// Runs body(data, index) at the same time for every index 0 .. count - 1 and waits for all of them. Index 0 stays on
  /// the calling thread, the only one that may talk to the host, and with it what finds no thread. Calls must not
  /// overlap.
  /// @return the results by index. @throws std::bad_alloc before anything has run
  std::vector<int> Run(Body body, void* data, int count);

 private:
  struct Worker;

  void Engage(int count);
  void Serve(Worker& worker);

  const int processors_;
  Monitor monitor_;
  std::atomic<unsigned> round_{0};  ///< goes up with every step, and at the end
  std::atomic<int> busy_{0};        ///< workers that have not finished the step
  bool closing_ = false;

  Body body_ = nullptr;
  void* data_ = nullptr;
  int* results_ = nullptr;
  int count_ = 0;  ///< of the step: workers of a lower index take part

  std::vector<std::unique_ptr<Worker>> workers_;
};

}  // namespace quentara::platform
