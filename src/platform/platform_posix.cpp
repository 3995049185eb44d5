#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <mutex>
#include <new>
#include <thread>

#include "platform/platform.h"

namespace quentara::platform {

int ProcessorCount() {
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

std::uint64_t ClockTicks() {
  return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
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

ThreadPointer::ThreadPointer() {
  static_assert(sizeof(pthread_key_t) == sizeof slot_);
  if (pthread_key_create(&slot_, nullptr) != 0) throw std::bad_alloc();
}

ThreadPointer::~ThreadPointer() {
  pthread_key_delete(slot_);
}

void* ThreadPointer::Get() const {
  return pthread_getspecific(slot_);
}

void ThreadPointer::Set(const void* pointer) {
  pthread_setspecific(slot_, pointer);
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

}  // namespace quentara::platform
