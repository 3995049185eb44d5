/// Which build of the window kernels runs: the best one for this processor, chosen once.
#pragma once

#include <vector>

#include "imageops/window_kernels.h"

namespace quentara {

/// Every build that this processor can run, the best one last.
const std::vector<const WindowKernels*>& RunnableKernels();

/// The build in use.
const WindowKernels& ActiveKernels();

/// Puts another build in use, on all threads, for the life of the scope: for tests and benchmarks alone.
class KernelScope {
 public:
  explicit KernelScope(const WindowKernels& kernels);
  ~KernelScope();
  KernelScope(const KernelScope&) = delete;
  KernelScope& operator=(const KernelScope&) = delete;

 private:
  const WindowKernels* const former_;
};

}  // namespace quentara
