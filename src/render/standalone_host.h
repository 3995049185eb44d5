/// A host without a host: the heap, threads of its own and no cancel. Benchmarks and tests render with it.
#pragma once

#include <cstddef>

#include "platform/worker_threads.h"
#include "render/plugin_host.h"

namespace quentara {

class StandaloneHost : public Plugin::Host {
 public:
  /// @param threads  the number of workers on offer, >= 1.
  explicit StandaloneHost(int threads = 1) : offered_(threads) {}

  void* Allocate(std::size_t bytes) override;
  void Free(void* pointer) override;
  void* AllocateBlock(std::size_t bytes) override;
  void FreeBlock(void* block) override;
  void* BlockData(void* block) override;
  int ThreadCount() override;
  void SetThreadCount(int count) override;
  void RunWorkers(Plugin::Worker worker, void* data, int count) override;

 private:
  const int offered_;
  int override_ = 0;
  platform::WorkerThreads workers_;
};

}  // namespace quentara
