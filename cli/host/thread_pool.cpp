#include "host/thread_pool.h"

#include <algorithm>
#include <atomic>

namespace quentara::cli {

int ThreadPool::Run(int iterations, const Iteration& iteration) {
  std::atomic<int> next{threads_}, firstError{0};
  auto share = [&](int threadIndex) {
    for (int i = threadIndex; i < iterations && firstError == 0; i = next++) {
      const int result = iteration(threadIndex, i);
      int none = 0;
      if (result != 0) firstError.compare_exchange_strong(none, result);
    }
  };
  const auto body = [](void* shared, int threadIndex) {
    return (*static_cast<decltype(share)*>(shared))(threadIndex), 0;
  };
  workers_.Run(body, &share, std::clamp(iterations, 1, threads_));
  return firstError;
}

}  // namespace quentara::cli
