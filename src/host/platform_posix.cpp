#include <algorithm>
#include <exception>
#include <mutex>
#include <thread>

#include "host/platform.h"

namespace Nivra::Host::System {

int ProcessorCount() {
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

std::vector<int> RunThreads(ThreadBody body, void* data, int count) {
  std::vector<int> codes(static_cast<std::size_t>(count));
  std::vector<std::thread> threads(codes.size());
  const auto run = [&](std::size_t index) { codes[index] = body(data, static_cast<int>(index)); };
  for (std::size_t index = 1; index < codes.size(); ++index) {
    try {
      threads[index] = std::thread(run, index);
    } catch (const std::exception&) {
      run(index);  // No thread to be had: the work is done all the same.
    }
  }
  run(0);
  for (std::thread& thread : threads)
    if (thread.joinable()) thread.join();
  return codes;
}

struct CriticalSection::Native {
  std::mutex mutex;
};

CriticalSection::CriticalSection() : native_(std::make_unique<Native>()) {}

CriticalSection::~CriticalSection() = default;

void CriticalSection::lock() {
  native_->mutex.lock();
}

void CriticalSection::unlock() {
  native_->mutex.unlock();
}

}  // namespace Nivra::Host::System
