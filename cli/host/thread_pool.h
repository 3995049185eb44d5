/// The worker threads that a host offers to an effect.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quentara::cli {

/// Threads that live as long as the pool and share the iterations of one call at a time.
class ThreadPool {
 public:
  /// One iteration on one thread; a result other than 0 is an error and ends the run early.
  using Iteration = std::function<int(int threadIndex, int i)>;

  /// @param threads  at least 1, the thread that calls Run among them.
  explicit ThreadPool(int threads);
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  int Threads() const { return static_cast<int>(workers_.size()) + 1; }

  /// Runs iterations 0 .. iterations - 1 and waits for all that were begun. The calling thread has index 0 and takes
  /// iteration 0; up to Threads() iterations, each has a thread of its own. Not to be called while it runs.
  /// @return 0, or the first result that was not; no iteration is begun after it.
  int Run(int iterations, const Iteration& iteration);

 private:
  void WorkerLoop(int threadIndex);
  void TakeIterations(int threadIndex);

  std::mutex mutex_;
  std::condition_variable begin_;
  std::condition_variable end_;
  unsigned long round_ = 0;  ///< counts the calls of Run, so that a worker joins each one once
  int busy_ = 0;
  bool closing_ = false;

  const Iteration* iteration_ = nullptr;
  int iterations_ = 0;
  std::atomic<int> next_{0};
  std::atomic<int> result_{0};

  std::vector<std::thread> workers_;
};

}  // namespace quentara::cli
