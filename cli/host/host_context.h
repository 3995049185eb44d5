/// The host as one caller of the effect: its in_data, and what its callbacks act on.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "AE_EffectCB.h"
#include "AE_EffectSuites.h"
#include "host/effect_library.h"
#include "host/parameter_definitions.h"
#include "host/thread_pool.h"

namespace quentara::cli {

using IterationFunction = PF_Err (*)(void* refcon, A_long threadIndex, A_long i, A_long iterations);

/// Which host the effect sees.
struct HostIdentity {
  PF_SpecVersion version{13, 27};
  A_long application = 0x46585443;  ///< 'FXTC'
};

/// How the caller follows a command and stops it. The effect's calls for the first two come on the calling thread.
struct Watch {
  std::function<bool()> cancelled = [] { return false; };
  std::function<void(int done, int total)> progress = [](int, int) {};
  std::function<void(const std::string&)> note = [](const std::string&) {};  ///< texts that the effect leaves
};

/// Several contexts may send commands at the same time, each from a thread of its own.
class HostContext {
 public:
  HostContext(const HostIdentity& identity, int threads, Watch watch);
  HostContext(const HostContext&) = delete;
  HostContext& operator=(const HostContext&) = delete;

  /// The context whose command runs on this thread; null where none does. For the callbacks that are given no
  /// effect_ref.
  static HostContext* Current();

  PF_InData& In() { return in_; }

  /// Sends a command and takes over the handles that the effect stored.
  /// @throws Cancelled, or EffectError with the effect's text, when it answers with an error.
  PF_OutData Send(EffectEntry entry, PF_Cmd command, PF_ParamDef* parameters[] = nullptr,
                  PF_LayerDef* output = nullptr);

  /// Where add_param puts definitions; null to refuse them.
  std::vector<ParameterDefinition>* definitions = nullptr;
  /// Where the parameter suite notes which rows are greyed out, by index; those past its end are refused.
  std::vector<bool> greyed;
  /// The processors that the effect is told of, whichever the threads: how a frame is cut into bands hangs on them.
  int bands = 1;

  // What the callbacks do.
  PF_Err AddParameter(A_long index, const PF_ParamDef* record);
  PF_Err UpdateParameter(A_long index, const PF_ParamDef* record);
  PF_Err Progress(A_long done, A_long total);
  PF_Err Abort();
  PF_Err Iterate(A_long iterations, void* refcon, IterationFunction function);

 private:
  PF_InData in_{};
  PF_UtilCallbacks utilities_{};
  SPBasicSuite suites_{};
  ThreadPool pool_;
  bool iterating_ = false;
  Watch watch_;
};

}  // namespace quentara::cli
