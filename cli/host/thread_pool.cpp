#include "host/thread_pool.h"

namespace quentara::cli {

ThreadPool::ThreadPool(int threads) {
  for (int i = 1; i < threads; ++i) workers_.emplace_back([this, i] { WorkerLoop(i); });
}

ThreadPool::~ThreadPool() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    closing_ = true;
  }
  begin_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

int ThreadPool::Run(int iterations, const Iteration& iteration) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    iteration_ = &iteration;
    iterations_ = iterations;
    next_ = Threads();
    result_ = 0;
    busy_ = static_cast<int>(workers_.size());
    ++round_;
  }
  begin_.notify_all();
  TakeIterations(0);
  std::unique_lock<std::mutex> lock(mutex_);
  end_.wait(lock, [this] { return busy_ == 0; });
  return result_;
}

void ThreadPool::WorkerLoop(int threadIndex) {
  unsigned long joined = 0;
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    begin_.wait(lock, [&] { return closing_ || round_ != joined; });
    if (closing_) return;
    joined = round_;
    lock.unlock();
    TakeIterations(threadIndex);
    lock.lock();
    if (--busy_ == 0) end_.notify_all();
  }
}

void ThreadPool::TakeIterations(int threadIndex) {
  for (int i = threadIndex; i < iterations_ && result_ == 0; i = next_++) {
    const int result = (*iteration_)(threadIndex, i);
    int none = 0;
    if (result != 0) result_.compare_exchange_strong(none, result);
  }
}

}  // namespace quentara::cli
