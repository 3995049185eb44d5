/// The render core's one door to the outside: memory, workers, the stop check and progress.
///
/// The pipeline makes a host the calling thread's current one by a `HostScope`; the free functions below forward to
/// it, so that no stage names a host. A thread without a current host gets the heap, one worker and no stop.
#pragma once

#include <cstddef>

namespace Plugin {

/// A render that was cancelled. It has no base, so that no handler of ordinary errors takes it for one.
class Interrupted {};

class Host;

/// A worker function, run by `Host::RunWorkers`.
/// @param context  the address of the thread index that the host gave this worker, for its stop checks.
/// @param index    which worker this is, 0 .. count - 1.
/// @param data     what the caller handed to `RunWorkers`.
using Worker = void (*)(Host& host, const int* context, int index, int count, void* data);

class Host {
 public:
  virtual ~Host() = default;

  virtual bool IsPlain() const { return true; }

  /// A block aligned to 16 bytes, for any `bytes` >= 0. @throws std::bad_alloc
  virtual void* Allocate(std::size_t bytes) = 0;
  /// Gives back what `Allocate` of this host returned; null is allowed.
  virtual void Free(void* pointer) = 0;

  /// A block with a handle of its own, and the address of its data. @throws std::bad_alloc
  virtual void* AllocateBlock(std::size_t bytes) = 0;
  virtual void FreeBlock(void* block) = 0;
  virtual void* BlockData(void* block) = 0;

  /// The number of workers on offer, >= 1.
  virtual int ThreadCount() = 0;
  /// Overrides that number; 0 takes the override back.
  virtual void SetThreadCount(int count) = 0;

  /// Runs `worker` `count` times, 0 standing for `ThreadCount()`, and returns when every run has ended. Calls do not
  /// nest. @throws std::bad_alloc, Interrupted or another exception when a worker did.
  virtual void RunWorkers(Worker worker, void* data, int count) = 0;

  /// @param context  as a worker got it; null on the thread of the render, outside `RunWorkers`.
  /// @throws Interrupted when the render has been cancelled.
  virtual void CheckStop(const int* context) { static_cast<void>(context); }
  /// Tells that `done` of `total` equal parts are finished; may throw as `CheckStop` does.
  virtual void ReportProgress(const int* context, int done, int total) {
    static_cast<void>(context), static_cast<void>(done), static_cast<void>(total);
  }
};

/// Makes a host the calling thread's current one for the life of the scope.
class HostScope {
 public:
  explicit HostScope(Host& host);
  ~HostScope();
  HostScope(const HostScope&) = delete;
  HostScope& operator=(const HostScope&) = delete;

 private:
  Host* const former_;
};

/// The calling thread's current host.
Host& CurrentHost();

void* Allocate(std::size_t bytes);
void Free(void* pointer);
int ThreadCount();
void RunWorkers(Worker worker, void* data, int count);
void CheckStop(const int* context = nullptr);
void ReportProgress(int done, int total);

/// Memory of a plane, aligned to 64 bytes. It remembers its host, so that a plane may outlive the `HostScope` in which
/// it was made, though not its host. @throws std::bad_alloc
void* AllocateSamples(std::size_t bytes);
void FreeSamples(void* samples);

}  // namespace Plugin
