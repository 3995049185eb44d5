#include "platform/worker_threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace quentara::platform {
namespace {

/// A step whose shares wait for each other, so that none of them can run after another.
struct Step {
  explicit Step(int count) : threads(static_cast<std::size_t>(count)), missing(count) {}

  static int Share(void* data, int index) {
    Step& step = *static_cast<Step*>(data);
    step.threads[static_cast<std::size_t>(index)] = std::this_thread::get_id();
    for (--step.missing; step.missing > 0;) std::this_thread::yield();
    return 100 + index;
  }

  std::vector<std::thread::id> threads;
  std::atomic<int> missing;
};

TEST(WorkerThreads, RunStepAfterStepOnTheSameThreads) {
  WorkerThreads workers;
  std::vector<std::thread::id> known = {std::this_thread::get_id()};
  for (const int count : {2, 5, 1, 3, 5, 2, 8, 4}) {
    SCOPED_TRACE(count);
    Step step(count);
    const std::vector<int> results = workers.Run(Step::Share, &step, count);
    ASSERT_EQ(static_cast<std::size_t>(count), results.size());
    for (int index = 0; index < count; ++index) {
      const auto place = static_cast<std::size_t>(index);
      EXPECT_EQ(100 + index, results[place]);
      if (place == known.size()) known.push_back(step.threads[place]);
      EXPECT_EQ(known[place], step.threads[place]);
    }
  }
  std::sort(known.begin(), known.end());
  EXPECT_EQ(known.end(), std::adjacent_find(known.begin(), known.end())) << "two indices share a thread";
}

// Steps that begin before all workers have seen the end of the last one, with more threads than processors.
TEST(WorkerThreads, LoseNoShareOfManyShortSteps) {
  WorkerThreads workers;
  std::vector<long> sums(7);
  const auto add = [](void* data, int index) { return ++(*static_cast<std::vector<long>*>(data))[index], 0; };
  long expected = 0;
  for (int step = 0; step < 2000; ++step) {
    const int count = step % 7 + 1;
    workers.Run(add, &sums, count);
    expected += count == 7;
    ASSERT_EQ(expected, sums[6]);
  }
  EXPECT_EQ(2000, sums[0]);
}

}  // namespace
}  // namespace quentara::platform
