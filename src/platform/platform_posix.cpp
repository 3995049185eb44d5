#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

#include "platform/platform.h"

namespace quentara::platform {

int ProcessorCount() {
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
}

std::uint64_t ClockTicks() {
  return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

struct Thread::Native {
  std::thread thread;
};

Thread::Thread(Body body, void* data) : native_(std::make_unique<Native>()) {
  try {
    native_->thread = std::thread(body, data);
  } catch (const std::system_error&) {
    throw std::bad_alloc();
  }
}

Thread::~Thread() {
  native_->thread.join();
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

struct Monitor::Native {
  std::mutex mutex;
  std::condition_variable changed;
};

Monitor::Monitor() : native_(std::make_unique<Native>()) {}

Monitor::~Monitor() = default;

void Monitor::lock() {
  native_->mutex.lock();
}

void Monitor::unlock() {
  native_->mutex.unlock();
}

void Monitor::Wait() {
  std::unique_lock held(native_->mutex, std::adopt_lock);
  native_->changed.wait(held);
  held.release();
}

void Monitor::NotifyAll() {
  native_->changed.notify_all();
}

}  // namespace quentara::platform
