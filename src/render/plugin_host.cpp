#include "render/plugin_host.h"

#include <cstdint>
#include <new>

#include "platform/platform.h"
#include "render/standalone_host.h"

namespace Plugin {
namespace {

quentara::platform::ThreadPointer current;
quentara::StandaloneHost plain;

constexpr std::size_t kAlignment = 64;

// Stands right in front of the samples.
struct SamplesOrigin {
  Host* host;
  void* block;
};

}  // namespace

HostScope::HostScope(Host& host) : former_(static_cast<Host*>(current.Get())) {
  current.Set(&host);
}

HostScope::~HostScope() {
  current.Set(former_);
}

Host& CurrentHost() {
  auto* const host = static_cast<Host*>(current.Get());
  return host != nullptr ? *host : plain;
}

void* Allocate(std::size_t bytes) {
  return CurrentHost().Allocate(bytes);
}

void Free(void* pointer) {
  CurrentHost().Free(pointer);
}

int ThreadCount() {
  return CurrentHost().ThreadCount();
}

void RunWorkers(Worker worker, void* data, int count) {
  CurrentHost().RunWorkers(worker, data, count);
}

void CheckStop(const int* context) {
  CurrentHost().CheckStop(context);
}

void ReportProgress(int done, int total) {
  CurrentHost().ReportProgress(nullptr, done, total);
}

void* AllocateSamples(std::size_t bytes) {
  Host& host = CurrentHost();
  void* const block = host.Allocate(bytes + sizeof(SamplesOrigin) + kAlignment);
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(block) + sizeof(SamplesOrigin);
  const std::uintptr_t samples = (first + kAlignment - 1) / kAlignment * kAlignment;
  new (reinterpret_cast<void*>(samples - sizeof(SamplesOrigin))) SamplesOrigin{&host, block};
  return reinterpret_cast<void*>(samples);
}

void FreeSamples(void* samples) {
  const auto* origin = static_cast<const SamplesOrigin*>(samples) - 1;
  origin->host->Free(origin->block);
}

}  // namespace Plugin
