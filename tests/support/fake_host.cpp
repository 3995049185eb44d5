#include "support/fake_host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "host/dispatch.h"

namespace quentara {

std::atomic<int> FakeHandles::live{0};
std::atomic<std::size_t> FakeHandles::bytes{0};
std::atomic<std::size_t> FakeHandles::mostBytes{0};
std::atomic<int> FakeHandles::overlaps{0};
std::atomic<int> FakeHandles::calls{0};
std::atomic<int> FakeHandles::failAt{0};

void FakeHandles::FailAt(int call) {
  calls = 0;
  failAt = call;
}

namespace {

class CallUnderWay {
 public:
  CallUnderWay() {
    if (underWay_++ != 0) ++FakeHandles::overlaps;
    std::this_thread::yield();
  }
  ~CallUnderWay() { --underWay_; }

 private:
  static inline std::atomic<int> underWay_{0};
};

bool FindsNoMemory() {
  return ++FakeHandles::calls == FakeHandles::failAt;
}

// The data is 8 bytes off an alignment of 16, as a host may have it, behind its size.
PF_Handle NewHandle(A_HandleSize size) {
  const CallUnderWay call;
  if (FindsNoMemory()) return nullptr;
  char* const memory = static_cast<char*>(std::malloc(size + 8));
  std::memcpy(memory, &size, sizeof size);
  static_assert(sizeof size == 8);
  ++FakeHandles::live;
  FakeHandles::bytes += size;
  FakeHandles::mostBytes = std::max(FakeHandles::mostBytes.load(), FakeHandles::bytes.load());
  return new void*(memory + 8);
}

void* LockHandle(PF_Handle handle) {
  return FindsNoMemory() ? nullptr : *handle;
}

void DisposeHandle(PF_Handle handle) {
  const CallUnderWay call;
  char* const memory = static_cast<char*>(*handle) - 8;
  A_HandleSize size = 0;
  std::memcpy(&size, memory, sizeof size);
  FakeHandles::bytes -= size;
  std::free(memory);
  delete handle;
  --FakeHandles::live;
}

using Iteration = PF_Err (*)(void*, A_long, A_long, A_long);

template <int processors>
PF_Err IterateInTurn(A_long iterations, void* refcon, Iteration function) {
  if (iterations == PF_Iterations_ONCE_PER_PROCESSOR) iterations = processors;
  PF_Err error = PF_Err_NONE;
  for (A_long i = 0; i < iterations && error == PF_Err_NONE; ++i) error = function(refcon, 0, i, iterations);
  return error;
}

PF_Err IterateOnThreads(A_long iterations, void* refcon, Iteration function) {
  if (iterations == PF_Iterations_ONCE_PER_PROCESSOR) iterations = kFakeProcessors;
  std::atomic<A_long> next{kFakeProcessors};
  std::atomic<PF_Err> result{PF_Err_NONE};
  const auto run = [&](int threadIndex) {
    for (A_long i = threadIndex; i < iterations && result == PF_Err_NONE; i = next++) {
      const PF_Err error = function(refcon, threadIndex, i, iterations);
      if (error != PF_Err_NONE) result = error;
    }
  };
  std::vector<std::thread> threads;
  for (int index = 1; index < kFakeProcessors; ++index) threads.emplace_back(run, index);
  run(0);
  for (std::thread& thread : threads) thread.join();
  return result;
}

FakeHost& HostOf(PF_ProgPtr ref) {
  return *reinterpret_cast<FakeHost*>(ref);
}

}  // namespace

FakeWorld::FakeWorld(int height, int width, bool deep, int padding, std::mt19937& rng) {
  const std::size_t pixel = deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel);
  layout.rowbytes = static_cast<A_long>(static_cast<std::size_t>(width + padding) * pixel);
  layout.width = width;
  layout.height = height;
  layout.world_flags = PF_WorldFlag_WRITEABLE | (deep ? PF_WorldFlag_DEEP : 0);
  memory.resize(static_cast<std::size_t>(layout.rowbytes) * static_cast<std::size_t>(height) / 2);
  std::generate(memory.begin(), memory.end(),
                [&] { return static_cast<std::uint16_t>(deep ? rng() % 32769 : rng() % 65536); });
}

PF_EffectWorld FakeWorld::World() {
  PF_EffectWorld world = layout;
  world.data = reinterpret_cast<PF_Pixel*>(memory.data());
  return world;
}

int FakeWorld::Sample(int y, int x, int channel) const {
  const auto* row =
      reinterpret_cast<const std::uint8_t*>(memory.data()) + static_cast<std::ptrdiff_t>(y) * layout.rowbytes;
  const int at = 4 * x + channel;
  return deep() ? reinterpret_cast<const std::uint16_t*>(row)[at] : row[at];
}

void FakeWorld::SetSample(int y, int x, int channel, int value) {
  auto* row = reinterpret_cast<std::uint8_t*>(memory.data()) + static_cast<std::ptrdiff_t>(y) * layout.rowbytes;
  const int at = 4 * x + channel;
  if (deep())
    reinterpret_cast<std::uint16_t*>(row)[at] = static_cast<std::uint16_t>(value);
  else
    row[at] = static_cast<std::uint8_t>(value);
}

FakeHost::FakeHost(HostWorkers workers, PF_SpecVersion version) : entry(Nivra::Dispatch), params(1) {
  utils.host_new_handle = NewHandle;
  utils.host_lock_handle = LockHandle;
  utils.host_dispose_handle = DisposeHandle;
  utils.ansi.strcpy = [](A_char* to, const A_char* from) { return std::strcpy(to, from); };
  if (workers == HostWorkers::One) utils.iterate_generic = IterateInTurn<1>;
  if (workers == HostWorkers::Serial) utils.iterate_generic = IterateInTurn<kFakeProcessors>;
  if (workers == HostWorkers::Threads) utils.iterate_generic = IterateOnThreads;
  in.inter.add_param = AddParam;
  in.inter.abort = Abort;
  in.inter.progress = Progress;
  in.utils = &utils;
  in.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
  in.version = version;
  in.downsample_x = in.downsample_y = {1, 1};
}

PF_Err FakeHost::Send(PF_Cmd command) {
  return entry(command, &in, &out, nullptr, nullptr, nullptr);
}

PF_ParamDef& FakeHost::Param(int id) {
  for (PF_ParamDef& param : params)
    if (param.uu.id == id && &param != &params[0]) return param;
  throw std::out_of_range("no such parameter");
}

void FakeHost::SetNoStage() {
  Param(6).u.pd.value = 3;
  Param(1).u.pd.value = 4;
  Param(26).u.bd.value = 0;
}

PF_Err FakeHost::Render(FakeWorld input, FakeWorld& output) {
  params[0].u.ld = input.World();
  PF_EffectWorld target = output.World();
  std::vector<PF_ParamDef*> list;
  for (PF_ParamDef& param : params) list.push_back(&param);
  return entry(PF_Cmd_RENDER, &in, &out, list.data(), &target, nullptr);
}

PF_Err FakeHost::AddParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDef* def) {
  FakeHost& host = HostOf(ref);
  if (index != -1) return PF_Err_INVALID_INDEX;
  if (static_cast<int>(host.params.size()) == host.refuseParam) return host.refusal;
  host.params.push_back(*def);
  return PF_Err_NONE;
}

PF_Err FakeHost::Abort(PF_ProgPtr ref) {
  return HostOf(ref).Answer();
}

PF_Err FakeHost::Progress(PF_ProgPtr ref, A_long current, A_long total) {
  if (total == 10) HostOf(ref).progress.push_back(current);
  return HostOf(ref).Answer();
}

PF_Err FakeHost::Answer() {
  if (std::this_thread::get_id() != thread_) ++foreignCalls;
  return ++asked == cancelAt ? cancel : PF_Err_NONE;
}

}  // namespace quentara
