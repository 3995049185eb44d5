/// The worker threads that a host offers to an effect.
#pragma once

#include <functional>

#include "platform/worker_threads.h"

namespace quentara::cli {

/// Threads that live as long as the pool and share the iterations of one call at a time.
class ThreadPool {
 public:
  /// One iteration on one thread; a result other than 0 is an error and ends the run early.
  using Iteration = std::function<int(int threadIndex, int i)>;

  /// @param threads  at least 1, the thread that calls Run among them.
  explicit ThreadPool(int threads) : threads_(threads) {}

  int Threads() const { return threads_; }

  /// Runs iterations 0 .. iterations - 1 and waits for all that were begun. The calling thread has index 0 and takes
  /// iteration 0; up to Threads() iterations, each has a thread of its own. Not to be called while it runs.
  /// @return 0, or the first result that was not; no iteration is begun after it.
  int Run(int iterations, const Iteration& iteration);

 private:
  const int threads_;
  platform::WorkerThreads workers_;
};

}  // namespace quentara::cli
