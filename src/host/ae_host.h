/// The calls of the host: memory, threads, stop and progress, for the life of one command.
#pragma once

#include <atomic>
#include <cstddef>

#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "host/errors.h"
#include "platform/worker_threads.h"

namespace Nivra::Host::AE {

/// A locked handle of the host.
struct HostBlock {
  PF_InData* inData;
  PF_Handle handle;
  void* data;  ///< aligned to 16 bytes
};

class Host {
 public:
  /// A share of work. `threadIndex` is the host's: only index 0 may call the host.
  using Task = void (*)(int threadIndex, int index, int count, void* data);

  explicit Host(PF_InData* inData) : inData_(inData) {}
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  PF_InData* inData() const { return inData_; }

  /// Groups of parameters came with version 12.12 of the interface.
  bool HasGroups() const;

  /// Calls must not overlap. @throws std::bad_alloc
  HostBlock* NewBlock(std::size_t bytes);
  void FreeBlock(HostBlock* block);

  /// The number of workers on offer, >= 1; an override above 0 stands for it.
  int ThreadCount() const;
  void SetThreadCount(int count) { threadCount_ = count; }

  /// Runs `task` `count` times, 0 standing for ThreadCount(): on this thread if that is 1, on the host's threads where
  /// it offers them, otherwise on threads of our own. Returns when every run has ended.
  /// @throws std::bad_alloc, Interrupted, Exception when a run did; a single run's exception as it is.
  void RunTasks(Task task, void* data, int count);

  /// @throws Interrupted when the host has stopped the command; other threads than 0 hear of it from thread 0.
  void CheckStop(int threadIndex);
  void ReportProgress(int threadIndex, int done, int total);

  /// The first error that a stop check or a report got, 0 if none did.
  PF_Err pendingError() const { return pendingError_; }

 private:
  bool HasIterate() const;
  void RunOnHostThreads(Task task, void* data, int count);
  void RunOnOwnThreads(Task task, void* data, int count);
  void ThrowIfPending() const;
  void Record(PF_Err error);

  PF_InData* const inData_;
  int threadCount_ = 0;
  quentara::platform::WorkerThreads ownThreads_;  ///< where the host offers none
  std::atomic<PF_Err> pendingError_{PF_Err_NONE};
};

}  // namespace Nivra::Host::AE
