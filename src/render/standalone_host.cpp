#include "render/standalone_host.h"

#include <exception>
#include <new>
#include <vector>

namespace quentara {

void* StandaloneHost::Allocate(std::size_t bytes) {
  return ::operator new(bytes);
}

void StandaloneHost::Free(void* pointer) {
  ::operator delete(pointer);
}

void* StandaloneHost::AllocateBlock(std::size_t bytes) {
  return Allocate(bytes);
}

void StandaloneHost::FreeBlock(void* block) {
  Free(block);
}

void* StandaloneHost::BlockData(void* block) {
  return block;
}

int StandaloneHost::ThreadCount() {
  return override_ != 0 ? override_ : offered_;
}

void StandaloneHost::SetThreadCount(int count) {
  override_ = count;
}

void StandaloneHost::RunWorkers(Plugin::Worker worker, void* data, int count) {
  if (count == 0) count = ThreadCount();
  std::vector<std::exception_ptr> failures(static_cast<std::size_t>(count));
  auto run = [&](int index) {
    try {
      worker(*this, &index, index, count, data);
    } catch (...) {
      failures[static_cast<std::size_t>(index)] = std::current_exception();
    }
  };
  const auto body = [](void* runs, int index) { return (*static_cast<decltype(run)*>(runs))(index), 0; };
  workers_.Run(body, &run, count);
  for (const std::exception_ptr& failure : failures)
    if (failure) std::rethrow_exception(failure);
}

}  // namespace quentara
