#include "platform/worker_threads.h"

#include <xmmintrin.h>

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <new>

namespace quentara::platform {
namespace {

// On processors of today 50 to 200 microseconds: a few times what it takes to fall asleep and be woken up.
constexpr int kLooks = 4000;

/// Returns when `met` or after a while: the other threads are about to finish, or the next step to begin. Pauses rather
/// than give way, which may cost a whole time slice where anything else wants to run.
template <class Condition>
void AwaitShortly(const Condition& met) {
  for (int look = 0; look < kLooks && !met(); ++look) _mm_pause();
}

}  // namespace

struct WorkerThreads::Worker {
  Worker(WorkerThreads& threads, int place)
      : all(threads),
        index(place),
        joined(threads.round_),
        thread([](void* self) { static_cast<Worker*>(self)->all.Serve(*static_cast<Worker*>(self)); }, this) {}

  WorkerThreads& all;
  const int index;
  unsigned joined;  ///< the last step that it has heard of
  Thread thread;
};

WorkerThreads::WorkerThreads() : processors_(ProcessorCount()) {}

// Its last members go first: the workers' threads, which end as soon as they hear of it.
WorkerThreads::~WorkerThreads() {
  const std::lock_guard lock(monitor_);
  closing_ = true;
  ++round_;
  monitor_.NotifyAll();
}

std::vector<int> WorkerThreads::Run(Body body, void* data, int count) {
  std::vector<int> results(static_cast<std::size_t>(count));
  Engage(count);
  const int first = std::min(count, static_cast<int>(workers_.size()) + 1);  // without a thread
  {
    const std::lock_guard lock(monitor_);
    body_ = body;
    data_ = data;
    results_ = results.data();
    count_ = count;
    busy_ = first - 1;
    ++round_;
    monitor_.NotifyAll();
  }
  for (int index = first; index < count; ++index) results[static_cast<std::size_t>(index)] = body(data, index);
  results[0] = body(data, 0);
  const auto finished = [&] { return busy_ == 0; };
  if (count <= processors_) AwaitShortly(finished);
  const std::lock_guard lock(monitor_);
  while (!finished()) monitor_.Wait();
  return results;
}

void WorkerThreads::Engage(int count) {
  try {
    workers_.reserve(static_cast<std::size_t>(count));  // first: nobody could end a thread that finds no place
    while (static_cast<int>(workers_.size()) < count - 1)
      workers_.push_back(std::make_unique<Worker>(*this, static_cast<int>(workers_.size()) + 1));
  } catch (const std::bad_alloc&) {  // Fewer threads do the same work.
  }
}

void WorkerThreads::Serve(Worker& worker) {
  const auto called = [&] { return round_ != worker.joined; };
  while (true) {
    if (worker.index < processors_) AwaitShortly(called);  // no more threads awake than can run
    {
      const std::lock_guard lock(monitor_);
      while (!called()) monitor_.Wait();
      worker.joined = round_;
      if (closing_) return;
      if (worker.index >= count_) continue;
    }
    results_[worker.index] = body_(data_, worker.index);
    const std::lock_guard lock(monitor_);
    if (--busy_ == 0) monitor_.NotifyAll();
  }
}

}  // namespace quentara::platform
