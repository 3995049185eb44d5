#include "host/ae_host.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include "platform/default_arithmetic.h"
#include "platform/platform.h"

namespace Nivra::Host::AE {
namespace {

constexpr std::size_t kAlignment = 16;

void* AlignUp(void* address) {
  const std::size_t above = reinterpret_cast<std::uintptr_t>(address) % kAlignment;
  return static_cast<char*>(address) + (above == 0 ? 0 : kAlignment - above);
}

bool TryLockNewHandle(const PF_UtilCallbacks& utils, A_HandleSize size, HostBlock& block) {
  block.handle = utils.host_new_handle(size);
  if (block.handle == nullptr) return false;
  block.data = AlignUp(utils.host_lock_handle(block.handle));
  if (block.data != nullptr) return true;
  utils.host_dispose_handle(block.handle);
  return false;
}

PF_Err CountIterations(void* refcon, A_long, A_long i, A_long iterations) {
  if (i == 0) *static_cast<int*>(refcon) = iterations;
  return PF_Err_NONE;
}

struct TaskRun {
  Host& host;
  Host::Task task;
  void* data;
  int count;  // of own threads
};

// No exception may pass through the host's frames.
PF_Err RunHostIteration(void* refcon, A_long threadIndex, A_long i, A_long iterations) {
  const TaskRun& run = *static_cast<const TaskRun*>(refcon);
  const quentara::platform::DefaultArithmetic arithmetic;
  try {
    run.task(threadIndex, i, iterations, run.data);
  } catch (const Interrupted&) {
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  } catch (...) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
  return threadIndex == 0 ? run.host.pendingError() : PF_Err_NONE;
}

enum ExitCode : int { kFinished = 0, kOutOfMemory = 1, kStopped = 2, kFailed = 3 };

int RunOwnThread(void* data, int index) {
  const TaskRun& run = *static_cast<const TaskRun*>(data);
  const quentara::platform::DefaultArithmetic arithmetic;
  try {
    run.task(index, index, run.count, run.data);
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const Interrupted&) {
    return kStopped;
  } catch (...) {
    return kFailed;
  }
  return kFinished;
}

constexpr char kThreadError[] = "An unknown error occurred in a thread.";

}  // namespace

bool Host::HasGroups() const {
  const PF_SpecVersion version = inData_->version;
  return version.major > 12 || (version.major == 12 && version.minor >= 12);
}

HostBlock* Host::NewBlock(std::size_t bytes) {
  if (bytes > std::numeric_limits<std::size_t>::max() - 2 * kAlignment) throw std::bad_alloc();
  const A_HandleSize size = (bytes + 2 * kAlignment - 1) / kAlignment * kAlignment;
  auto block = std::make_unique<HostBlock>(HostBlock{inData_, nullptr, nullptr});
  while (!TryLockNewHandle(*inData_->utils, size, *block)) {
    const std::new_handler makeRoom = std::get_new_handler();
    if (makeRoom == nullptr) throw std::bad_alloc();
    makeRoom();
  }
  return block.release();
}

void Host::FreeBlock(HostBlock* block) {
  block->inData->utils->host_dispose_handle(block->handle);
  delete block;
}

bool Host::HasIterate() const {
  return inData_->version.major >= 12 && inData_->utils->iterate_generic != nullptr;
}

int Host::ThreadCount() const {
  if (threadCount_ != 0) return threadCount_;
  if (!HasIterate()) return quentara::platform::ProcessorCount();
  int count = 1;
  inData_->utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, &count, CountIterations);
  return count;
}

void Host::RunTasks(Task task, void* data, int count) {
  const int runs = count != 0 ? count : ThreadCount();
  if (runs == 1)
    task(0, 0, 1, data);
  else if (HasIterate())
    RunOnHostThreads(task, data, count != 0 || threadCount_ != 0 ? runs : PF_Iterations_ONCE_PER_PROCESSOR);
  else
    RunOnOwnThreads(task, data, runs);
}

void Host::RunOnHostThreads(Task task, void* data, int count) {
  TaskRun run{*this, task, data, count};
  const PF_Err error = inData_->utils->iterate_generic(count, &run, RunHostIteration);
  if (error == PF_Err_OUT_OF_MEMORY) throw std::bad_alloc();
  if (error == PF_Interrupt_CANCEL) Record(error);
  if (error != PF_Err_NONE) throw Exception("AEHost::thread", kThreadError);
  ThrowIfPending();
}

void Host::RunOnOwnThreads(Task task, void* data, int count) {
  TaskRun run{*this, task, data, count};
  int last = kFinished;
  for (const int code : ownThreads_.Run(RunOwnThread, &run, count))
    if (code != kFinished) last = code;
  if (last == kOutOfMemory) throw std::bad_alloc();
  if (last == kStopped) throw Interrupted();
  if (last == kFailed) throw Exception("Nivra::Host::System::Thread::thread", kThreadError);
}

void Host::CheckStop(int threadIndex) {
  ThrowIfPending();
  if (threadIndex == 0) Record(inData_->inter.abort(inData_->effect_ref));
}

void Host::ReportProgress(int threadIndex, int done, int total) {
  ThrowIfPending();
  if (threadIndex == 0) Record(inData_->inter.progress(inData_->effect_ref, done, total));
}

void Host::ThrowIfPending() const {
  if (pendingError_ != PF_Err_NONE) throw Interrupted();
}

void Host::Record(PF_Err error) {
  if (error == PF_Err_NONE) return;
  pendingError_ = error;
  throw Interrupted();
}

}  // namespace Nivra::Host::AE
