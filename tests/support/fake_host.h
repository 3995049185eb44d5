/// A compositing host for tests: it counts what it hands out and fails or cancels on request.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <random>
#include <thread>
#include <vector>

#include "AE_Effect.h"
#include "AE_EffectCB.h"

namespace quentara {

/// The memory of all fake hosts of the process, whose callbacks do not say which host is meant.
namespace FakeHandles {
extern std::atomic<int> live;
extern std::atomic<std::size_t> bytes;
extern std::atomic<std::size_t> mostBytes;  ///< at once, since the test set it; not to be used with several threads
extern std::atomic<int> overlaps;           ///< calls that began while another was under way
extern std::atomic<int> calls;              ///< of new and lock
extern std::atomic<int> failAt;             ///< the call, counted from 1, that finds no memory; 0 for none
/// Starts the count of calls anew.
void FailAt(int call);
}  // namespace FakeHandles

/// How the host runs `iterate_generic`: not at all, for one processor, or for three: in turn on the calling thread, or
/// on threads.
enum class HostWorkers { None, One, Serial, Threads };
constexpr HostWorkers kAllHostWorkers[] = {HostWorkers::None, HostWorkers::Serial, HostWorkers::Threads};
constexpr int kFakeProcessors = 3;

/// A world whose rows may be padded, filled with random bytes, padding included.
class FakeWorld {
 public:
  FakeWorld(int height, int width, bool deep, int padding, std::mt19937& rng);

  std::vector<std::uint16_t> memory;  ///< in units of 16 bits, so that deep pixels are aligned
  PF_EffectWorld layout{};            ///< without the address

  PF_EffectWorld World();

  bool deep() const { return (layout.world_flags & PF_WorldFlag_DEEP) != 0; }
  /// Channel 0..3: alpha, red, green, blue.
  int Sample(int y, int x, int channel) const;
  void SetSample(int y, int x, int channel, int value);
};

class FakeHost {
 public:
  explicit FakeHost(HostWorkers workers = HostWorkers::Serial, PF_SpecVersion version = {13, 27});
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  using Entry = PF_Err (*)(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                           void* extra);
  Entry entry;  ///< the effect's; the code that is linked to the test if nobody says otherwise

  PF_InData in{};
  PF_OutData out{};
  PF_UtilCallbacks utils{};

  std::vector<PF_ParamDef> params;  ///< as added, behind the input layer
  int refuseParam = 0;              ///< the add_param call, counted from 1, that fails
  PF_Err refusal = PF_Err_NONE;

  std::vector<int> progress;  ///< the parts done, as reported
  int asked = 0;              ///< calls of abort and progress
  int cancelAt = 0;           ///< the one of them, counted from 1, that answers `cancel`
  PF_Err cancel = PF_Interrupt_CANCEL;
  int foreignCalls = 0;  ///< of them on another thread than the one that made the host

  PF_Err Send(PF_Cmd command);
  /// Defines the parameters at their defaults.
  PF_Err DefineParams() { return Send(PF_Cmd_PARAMS_SETUP); }
  PF_ParamDef& Param(int id);
  /// Turns everything off: no style, no blur, no outline.
  void SetNoStage();
  PF_Err Render(FakeWorld input, FakeWorld& output);

 private:
  static PF_Err AddParam(PF_ProgPtr ref, PF_ParamIndex index, PF_ParamDef* def);
  static PF_Err Abort(PF_ProgPtr ref);
  static PF_Err Progress(PF_ProgPtr ref, A_long current, A_long total);
  PF_Err Answer();

  const std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace quentara
