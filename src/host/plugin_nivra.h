/// The render core's host on top of the compositing host, and the object that every command builds for itself.
#pragma once

#include <cassert>
#include <mutex>
#include <new>

#include "host/ae_host.h"
#include "platform/platform.h"
#include "render/plugin_host.h"

namespace Plugin {

/// `Plugin::Host` on the calls of `NativeHost`. Several workers may allocate and free at the same time.
template <class NativeHost>
class HostNivra : public Host {
 public:
  using Block = Nivra::Host::AE::HostBlock;

  explicit HostNivra(NativeHost& host) : host_(&host) {}
  HostNivra(const HostNivra&) = delete;
  HostNivra& operator=(const HostNivra&) = delete;

  bool IsPlain() const override { return false; }

  void* Allocate(std::size_t bytes) override {
    if (bytes + kHeader < bytes) throw std::bad_alloc();
    auto* const block = static_cast<Block*>(AllocateBlock(bytes + kHeader));
    *static_cast<Block**>(block->data) = block;
    return static_cast<char*>(block->data) + kHeader;
  }
  void Free(void* pointer) override {
    if (pointer != nullptr) FreeBlock(*reinterpret_cast<Block**>(static_cast<char*>(pointer) - kHeader));
  }

  void* AllocateBlock(std::size_t bytes) override {
    const std::lock_guard guard(memoryLock_);
    return host_->NewBlock(bytes);
  }
  void FreeBlock(void* block) override {
    const std::lock_guard guard(memoryLock_);
    host_->FreeBlock(static_cast<Block*>(block));
  }
  void* BlockData(void* block) override {
    const std::lock_guard guard(memoryLock_);
    return static_cast<Block*>(block)->data;
  }

  int ThreadCount() override { return host_->ThreadCount(); }
  void SetThreadCount(int count) override { host_->SetThreadCount(count); }

  void RunWorkers(Worker worker, void* data, int count) override {
    Run run{this, worker, data};
    const ThreadMark mark(inThread_);
    PassStopOn([&] { host_->RunTasks(RunWorker, &run, count); });
  }

  void CheckStop(const int* context) override {
    PassStopOn([&] { host_->CheckStop(ThreadIndex(context)); });
  }
  void ReportProgress(const int* context, int done, int total) override {
    PassStopOn([&] { host_->ReportProgress(ThreadIndex(context), done, total); });
  }

 private:
  /// In front of the bytes of `Allocate`: where their block is. Keeps them aligned.
  static constexpr std::size_t kHeader = 16;

  struct Run {
    HostNivra* host;
    Worker worker;
    void* data;
  };

  class ThreadMark {
   public:
    explicit ThreadMark(bool& inThread) : inThread_(inThread) { inThread_ = true; }
    ~ThreadMark() { inThread_ = false; }

   private:
    bool& inThread_;
  };

  static void RunWorker(int threadIndex, int index, int count, void* data) {
    const Run& run = *static_cast<const Run*>(data);
    try {
      run.worker(*run.host, &threadIndex, index, count, run.data);
    } catch (const Interrupted&) {
      throw Nivra::Interrupted();
    }
  }

  /// The render core knows its own stop signal only.
  template <class Call>
  static void PassStopOn(const Call& call) {
    try {
      call();
    } catch (const Nivra::Interrupted&) {
      throw Interrupted();
    }
  }

  int ThreadIndex(const int* context) const {
    if (context != nullptr) return *context;
    assert(!inThread_);
    return 0;
  }

  NativeHost* const host_;
  quentara::platform::Monitor memoryLock_;
  bool inThread_ = false;
};

}  // namespace Plugin

namespace Nivra {

/// What one command works with. It lives on the stack of the command and keeps nothing for the next one.
struct EffectContext {
  EffectContext(PF_InData* inData, PF_ParamDef** paramList) : host(inData), plugin(host), params(paramList) {}

  Host::AE::Host host;
  Plugin::HostNivra<Host::AE::Host> plugin;
  PF_ParamDef** params;   ///< null while the parameters are being defined
  A_long paramCount = 1;  ///< starts with the input layer, which the host defines itself
};

}  // namespace Nivra
