/// What the effect needs of the operating system: one small source per system stands behind this header, and nothing
/// else asks which system it is.
#pragma once

#include <cstdint>
#include <memory>

namespace quentara::platform {

/// The number of processors, >= 1.
int ProcessorCount();

/// The high-resolution clock, in ticks since some moment of the past.
std::uint64_t ClockTicks();

/// A thread from its construction to its destruction, which waits for its end.
class Thread {
 public:
  /// It lets no exception out.
  using Body = void (*)(void* data);

  /// Begins body(data). @throws std::bad_alloc when there is no thread to be had.
  Thread(Body body, void* data);
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

 private:
  struct Native;
  const std::unique_ptr<Native> native_;
};

/// A pointer of each thread's own, null at first. A slot of the system's, not the compiler's thread-local storage: a
/// static one is gone without a trace when the library is unloaded.
class ThreadPointer {
 public:
  /// @throws std::bad_alloc when there is no slot left.
  ThreadPointer();
  ~ThreadPointer();
  ThreadPointer(const ThreadPointer&) = delete;
  ThreadPointer& operator=(const ThreadPointer&) = delete;

  void* Get() const;
  void Set(const void* pointer);

 private:
  std::uint32_t slot_;
};

/// A lock for short stretches, for std::lock_guard. Whoever holds it may wait for what others do under it.
class Monitor {
 public:
  Monitor();
  ~Monitor();
  void lock();
  void unlock();

  /// Gives the lock up until `NotifyAll` is called, or for no reason, and takes it again.
  void Wait();
  void NotifyAll();

 private:
  struct Native;
  const std::unique_ptr<Native> native_;
};

}  // namespace quentara::platform
