#include "host/callbacks.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "AE_EffectSuites.h"
#include "host/handles.h"
#include "host/host_context.h"

namespace quentara::cli {
namespace {

/// Calls `action` with the context behind `effect`. No exception passes through the effect.
template <typename Action>
PF_Err OnContext(HostContext* context, Action action) noexcept {
  if (!context) return PF_Err_INVALID_CALLBACK;
  try {
    return action(*context);
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  } catch (...) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
  }
}

HostContext* ContextOf(PF_ProgPtr effect) {
  return reinterpret_cast<HostContext*>(effect);
}

PF_Err AddParam(PF_ProgPtr effect, PF_ParamIndex index, PF_ParamDefPtr record) {
  return OnContext(ContextOf(effect), [&](HostContext& context) { return context.AddParameter(index, record); });
}

PF_Err Abort(PF_ProgPtr effect) {
  return OnContext(ContextOf(effect), [](HostContext& context) { return context.Abort(); });
}

PF_Err Progress(PF_ProgPtr effect, A_long done, A_long total) {
  return OnContext(ContextOf(effect), [&](HostContext& context) { return context.Progress(done, total); });
}

PF_Err CheckoutParam(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_ParamDef*) {
  return PF_Err_INVALID_CALLBACK;
}

PF_Err CheckinParam(PF_ProgPtr, PF_ParamDef*) {
  return PF_Err_INVALID_CALLBACK;
}

PF_Err RegisterUi(PF_ProgPtr, PF_CustomUIInfo*) {
  return PF_Err_INVALID_CALLBACK;
}

PF_Err IterateGeneric(A_long iterations, void* refcon, IterationFunction function) {
  return OnContext(HostContext::Current(),
                   [&](HostContext& context) { return context.Iterate(iterations, refcon, function); });
}

PF_Err UpdateParamUi(PF_ProgPtr effect, PF_ParamIndex index, const PF_ParamDef* record) {
  return OnContext(ContextOf(effect), [&](HostContext& context) { return context.UpdateParameter(index, record); });
}

PF_Err NotOffered() {
  return PF_Err_INVALID_CALLBACK;
}

constexpr PF_ParamUtilsSuite2 kParameterSuite = {UpdateParamUi, NotOffered, NotOffered, NotOffered, NotOffered,
                                                 NotOffered,    NotOffered, NotOffered, NotOffered, NotOffered};

bool IsParameterSuite(const char* name, int32_t version) {
  return name && std::strcmp(name, kPFParamUtilsSuite) == 0 && version == kPFParamUtilsSuiteVersion2;
}

// The suite is a constant, so acquiring and releasing it have nothing to count.
SPErr AcquireSuite(const char* name, int32_t version, const void** suite) {
  if (!suite) return PF_Err_BAD_CALLBACK_PARAM;
  *suite = IsParameterSuite(name, version) ? &kParameterSuite : nullptr;
  return *suite ? PF_Err_NONE : PF_Err_INVALID_CALLBACK;
}

SPErr ReleaseSuite(const char* name, int32_t version) {
  return IsParameterSuite(name, version) ? PF_Err_NONE : PF_Err_INVALID_CALLBACK;
}

SPBoolean IsEqual(const char* a, const char* b) {
  return std::strcmp(a, b) == 0;
}

SPErr AllocateBlock(size_t size, void** block) {
  *block = std::malloc(size ? size : 1);
  return *block ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
}

SPErr FreeBlock(void* block) {
  std::free(block);
  return PF_Err_NONE;
}

SPErr ReallocateBlock(void* block, size_t size, void** resized) {
  void* moved = std::realloc(block, size ? size : 1);
  if (!moved) return PF_Err_OUT_OF_MEMORY;
  *resized = moved;
  return PF_Err_NONE;
}

SPErr Undefined() {
  return PF_Err_INVALID_CALLBACK;
}

void InstallLibraryFunctions(PF_ANSICallbacks& ansi) {
  ansi = {std::atan, std::atan2,   std::ceil,   std::cos,   std::exp,  std::fabs, std::floor,
          std::fmod, std::hypot,   std::log,    std::log10, std::pow,  std::sin,  std::sqrt,
          std::tan,  std::sprintf, std::strcpy, std::asin,  std::acos, {}};
}

}  // namespace

void InstallCallbacks(PF_InteractCallbacks& interact, PF_UtilCallbacks& utilities, SPBasicSuite& suites) {
  interact.checkout_param = CheckoutParam;
  interact.checkin_param = CheckinParam;
  interact.add_param = AddParam;
  interact.abort = Abort;
  interact.progress = Progress;
  interact.register_ui = RegisterUi;

  utilities.host_new_handle = NewHandle;
  utilities.host_lock_handle = LockHandle;
  utilities.host_unlock_handle = UnlockHandle;
  utilities.host_dispose_handle = DisposeHandle;
  utilities.host_get_handle_size = HandleSize;
  utilities.host_resize_handle = ResizeHandle;
  utilities.iterate_generic = IterateGeneric;
  InstallLibraryFunctions(utilities.ansi);

  suites = {AcquireSuite, ReleaseSuite, IsEqual, AllocateBlock, FreeBlock, ReallocateBlock, Undefined};
}

}  // namespace quentara::cli
