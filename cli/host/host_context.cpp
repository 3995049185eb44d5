#include "host/host_context.h"

#include <cstring>

#include "errors.h"
#include "host/callbacks.h"

namespace quentara::cli {
namespace {

thread_local HostContext* currentContext = nullptr;

class CurrentScope {
 public:
  explicit CurrentScope(HostContext* context) : outer_(currentContext) { currentContext = context; }
  ~CurrentScope() { currentContext = outer_; }
  CurrentScope(const CurrentScope&) = delete;
  CurrentScope& operator=(const CurrentScope&) = delete;

 private:
  HostContext* outer_;
};

/// One line, without what an effect puts at the end of its texts.
std::string MessageOf(const PF_OutData& out) {
  std::string text(out.return_msg, strnlen(out.return_msg, sizeof(out.return_msg)));
  for (char& c : text)
    if (c == '\r' || c == '\n') c = ' ';
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::string DescribeError(PF_Err error, const std::string& text) {
  const std::string number = "error " + std::to_string(error);
  if (!text.empty()) return "the effect failed: " + text + " (" + number + ")";
  if (error == PF_Err_OUT_OF_MEMORY) return "the effect ran out of memory (" + number + ")";
  return "the effect failed with " + number;
}

}  // namespace

HostContext::HostContext(const HostIdentity& identity, int threads, Watch watch)
    : pool_(threads), watch_(std::move(watch)) {
  InstallCallbacks(in_.inter, utilities_, suites_);
  in_.utils = &utilities_;
  in_.pica_basicP = &suites_;
  in_.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
  in_.quality = 1;  // the better of the interface's two
  in_.version = identity.version;
  in_.appl_id = identity.application;
  in_.time_step = 1;
  in_.time_scale = 1;
  in_.downsample_x = in_.downsample_y = in_.pixel_aspect_ratio = {1, 1};
}

HostContext* HostContext::Current() {
  return currentContext;
}

PF_OutData HostContext::Send(EffectEntry entry, PF_Cmd command, PF_ParamDef* parameters[], PF_LayerDef* output) {
  PF_OutData out{};
  out.global_data = in_.global_data;
  out.sequence_data = in_.sequence_data;
  out.frame_data = in_.frame_data;
  PF_Err error = PF_Err_NONE;
  {
    const CurrentScope scope(this);
    error = entry(command, &in_, &out, parameters, output, nullptr);
  }
  in_.global_data = out.global_data;
  in_.sequence_data = out.sequence_data;
  in_.frame_data = out.frame_data;

  if (error == PF_Interrupt_CANCEL && watch_.cancelled()) throw Cancelled();
  const std::string text = MessageOf(out);
  if (error != PF_Err_NONE) throw EffectError(DescribeError(error, text));
  if (!text.empty()) watch_.note(text);
  return out;
}

PF_Err HostContext::AddParameter(A_long index, const PF_ParamDef* record) {
  if (!definitions) return PF_Err_INVALID_CALLBACK;
  if (!record) return PF_Err_BAD_CALLBACK_PARAM;
  if (index != -1) return PF_Err_INVALID_INDEX;
  ParameterDefinition definition;
  if (const PF_Err error = CopyDefinition(*record, definition)) return error;
  definitions->push_back(std::move(definition));
  return PF_Err_NONE;
}

PF_Err HostContext::UpdateParameter(A_long index, const PF_ParamDef* record) {
  if (!record) return PF_Err_BAD_CALLBACK_PARAM;
  if (index < 1 || static_cast<std::size_t>(index) >= greyed.size()) return PF_Err_INVALID_INDEX;
  greyed[static_cast<std::size_t>(index)] = (record->ui_flags & PF_PUI_DISABLED) != 0;
  return PF_Err_NONE;
}

PF_Err HostContext::Progress(A_long done, A_long total) {
  watch_.progress(done, total);
  return Abort();
}

PF_Err HostContext::Abort() {
  return watch_.cancelled() ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

PF_Err HostContext::Iterate(A_long iterations, void* refcon, IterationFunction function) {
  if (iterating_) return PF_Err_INVALID_CALLBACK;
  const A_long count = iterations == PF_Iterations_ONCE_PER_PROCESSOR ? bands : iterations;
  if (!function || count < 0) return PF_Err_BAD_CALLBACK_PARAM;
  iterating_ = true;
  const PF_Err error =
      pool_.Run(count, [&](int threadIndex, int i) { return function(refcon, threadIndex, i, count); });
  iterating_ = false;
  return error;
}

}  // namespace quentara::cli
