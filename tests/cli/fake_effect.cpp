// A small effect for testing the host: what it does is chosen by its parameter "Mode", by a host version of 99.x what
// its set-up does wrong.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

#include "AE_EffectCB.h"
#include "AE_EffectSuites.h"

namespace {

enum Mode { kInvert = 1, kShowCommands, kCheckHost, kFail, kFailSilently, kWaitForCancel, kGrow, kIgnoreCancel, kLate };
enum SetupFault { kFailSetup = 1, kWrongCount, kLayerParameter, kBadPopup };

PF_Err Define(PF_InData* in, PF_OutData* out) {
  const int fault = in->version.major == 99 ? in->version.minor : 0;
  A_long count = 1;
  PF_Err error = PF_Err_NONE;
  const auto add = [&](PF_ParamType type, const char* name, auto fill) {
    PF_ParamDef record{};
    record.uu.id = 10 + count++;
    record.param_type = type;
    std::strcpy(record.name, name);
    fill(record.u);
    if (!error) error = in->inter.add_param(in->effect_ref, -1, &record);
  };
  const auto nothing = [](auto&) {};
  // The host must copy the texts: these are gone when the function returns.
  std::string modes = "Invert|Show Commands|Check Host|Fail|Fail Silently|Wait For Cancel|Grow|Ignore Cancel|Fail Late";
  std::string box = "Tone";
  add(PF_Param_POPUP, "Mode", [&](auto& popup) {
    popup.pd.num_choices = fault == kBadPopup ? 3 : 9;
    popup.pd.dephault = kInvert;
    popup.pd.u.namesptr = modes.c_str();
  });
  add(PF_Param_GROUP_START, "Tone", nothing);
  add(PF_Param_CHECKBOX, "", [&](auto& check) { check.bd.u.nameptr = box.c_str(); });
  add(PF_Param_SLIDER, "Level", [](auto& slider) {
    slider.sd.valid_max = 100;
    slider.sd.slider_max = 50;
    slider.sd.dephault = 7;
  });
  add(PF_Param_FIX_SLIDER, "Strength, of just 31 characters", [](auto& slider) {
    slider.fd.valid_max = slider.fd.slider_max = 5 << 16;
    slider.fd.dephault = 98304;
  });
  add(PF_Param_GROUP_END, "", nothing);
  add(PF_Param_COLOR, "Ink", [](auto& colour) { colour.cd.dephault = {255, 1, 2, 3}; });
  add(fault == kLayerParameter ? PF_Param_LAYER : PF_Param_FIX_SLIDER, "Mix", [](auto& slider) {
    slider.fd.valid_max = slider.fd.slider_max = 100 << 16;
    slider.fd.display_flags = PF_ValueDisplayFlag_PERCENT;
  });
  modes.assign(modes.size(), '?');
  box.assign(box.size(), '?');
  out->num_params = fault == kWrongCount ? count + 1 : count;
  return error;
}

struct RowWork {
  PF_InData* in;
  const PF_LayerDef *input, *output;
};

PF_Err InvertRow(void* refcon, A_long threadIndex, A_long y, A_long) {
  const auto& [in, input, output] = *static_cast<RowWork*>(refcon);
  auto* from = reinterpret_cast<A_u_char*>(input->data) + std::int64_t{y} * input->rowbytes;
  auto* to = reinterpret_cast<A_u_char*>(output->data) + std::int64_t{y} * output->rowbytes;
  for (A_long i = 0; i < 4 * input->width; ++i)
    if (input->world_flags & PF_WorldFlag_DEEP)
      reinterpret_cast<A_u_short*>(to)[i] = static_cast<A_u_short>(32768 - reinterpret_cast<A_u_short*>(from)[i]);
    else
      to[i] = static_cast<A_u_char>(255 - from[i]);
  return threadIndex == 0 ? in->inter.abort(in->effect_ref) : PF_Err_NONE;
}

// The text of the first thing that the host does wrong, empty for none.
const char* CheckHandles(const PF_UtilCallbacks& utilities) {
  PF_Handle handle = utilities.host_new_handle(100);
  if (!handle || utilities.host_get_handle_size(handle) != 100) return "size of a new handle";
  void* data = utilities.host_lock_handle(handle);
  if (data != *handle || reinterpret_cast<std::uintptr_t>(data) % 16 != 0) return "address of a locked handle";
  std::memset(data, 'x', 100);
  if (utilities.host_resize_handle(200, &handle) == PF_Err_NONE) return "a locked handle was resized";
  utilities.host_unlock_handle(handle);
  if (utilities.host_resize_handle(5000, &handle) != PF_Err_NONE) return "an unlocked handle was not resized";
  if (utilities.host_get_handle_size(handle) != 5000 || static_cast<char*>(*handle)[99] != 'x')
    return "a resized handle";
  utilities.host_dispose_handle(handle);
  utilities.host_dispose_handle(nullptr);
  if (utilities.host_lock_handle(nullptr)) return "locking no handle";
  if (utilities.host_new_handle(~A_HandleSize{0})) return "a handle without memory";
  return "";
}

PF_Err CountOnce(void* refcon, A_long, A_long i, A_long iterations) {
  static_cast<A_long*>(refcon)[i] += iterations;
  return PF_Err_NONE;
}

PF_Err Nest(void* refcon, A_long, A_long, A_long) {
  A_long count = 0;
  const PF_Err error = static_cast<PF_InData*>(refcon)->utils->iterate_generic(1, &count, CountOnce);
  return error == PF_Err_INVALID_CALLBACK ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
}

const char* CheckIterations(PF_InData* in) {
  A_long counts[64]{};
  in->utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, counts, CountOnce);
  const A_long processors = counts[0];
  for (A_long i = 0; i < processors; ++i)
    if (counts[i] != processors) return "an iteration for each processor";
  if (processors < 1 || counts[processors] != 0) return "count of processors";
  if (in->utils->iterate_generic(1, in, Nest) != PF_Err_NONE) return "nested iterations";
  if (in->utils->iterate_generic(-2, in, Nest) == PF_Err_NONE) return "a negative number of iterations";
  return "";
}

const char* CheckInData(const PF_InData* in, PF_ParamDef* parameters[]) {
  const PF_LayerDef& layer = parameters[0]->u.ld;
  if (in->num_params != 9) return "num_params";
  if (in->width != 2 * layer.width || in->height != 2 * layer.height) return "size without downsampling";
  if (in->downsample_x.num != 1 || in->downsample_x.den != 2 || in->downsample_y.den != 2) return "downsampling";
  if (in->time_scale != 30000 || in->time_step != 1001 || in->current_time != 3 * 1001) return "time";
  if (parameters[4]->u.sd.value != 9) return "value of a slider";
  if (parameters[5]->u.fd.value != 9 * 65536 / 4) return "value of a fixed number";
  const PF_Pixel& ink = parameters[7]->u.cd.value;
  if (ink.alpha != 255 || ink.red != 255 || ink.green != 128 || ink.blue != 0) return "value of a colour";
  if (std::strcmp(parameters[3]->u.bd.u.nameptr, "Tone") != 0) return "text of a check box";
  const void* suite = in;
  if (in->pica_basicP->AcquireSuite(kPFParamUtilsSuite, 1, &suite) == 0 || suite) return "a suite of another version";
  if (in->pica_basicP->AcquireSuite("PF No Such Suite", 2, &suite) == 0 || suite) return "an unknown suite";
  char text[8];
  if (in->utils->ansi.strcpy(text, "ok") != text || in->utils->ansi.atan2(0, 1) != 0) return "C library";
  if (in->inter.checkout_param(in->effect_ref, 1, 0, 1, 1, nullptr) == PF_Err_NONE) return "checkout_param";
  if (layer.rowbytes <= 4 * layer.width || layer.rowbytes % 16 != 0) return "padding of a row";
  return "";
}

PF_Err Render(PF_InData* in, PF_OutData* out, PF_ParamDef* parameters[], PF_LayerDef* output) {
  const PF_LayerDef& input = parameters[0]->u.ld;
  const A_long mode = parameters[1]->u.pd.value;
  switch (mode) {
    case kShowCommands:
      std::strcpy(out->return_msg, static_cast<const char*>(*in->global_data));
      return PF_Err_NONE;
    case kCheckHost:
      for (const char* fault : {CheckHandles(*in->utils), CheckIterations(in), CheckInData(in, parameters)})
        if (*fault && !*out->return_msg) std::strcpy(out->return_msg, fault);
      return *out->return_msg ? PF_Err_BAD_CALLBACK_PARAM : PF_Err_NONE;
    case kFail:
      std::strcpy(out->return_msg, "No paint\rleft.\r");
      return PF_Err_INTERNAL_STRUCT_DAMAGED;
    case kFailSilently:
      return PF_Err_OUT_OF_MEMORY;
    case kWaitForCancel:
    case kIgnoreCancel:
      std::fputs("rendering\n", stderr);
      for (A_long done = 0;; ++done)
        if (const PF_Err error = in->inter.progress(in->effect_ref, done % 100, 100); error && mode == kWaitForCancel)
          return error;
    case kLate:
      if (in->current_time / in->time_step >= 2) return PF_Err_OUT_OF_MEMORY;
      [[fallthrough]];
    default: {
      RowWork work{in, &input, output};
      return in->utils->iterate_generic(input.height, &work, InvertRow);
    }
  }
}

// Follows the order of commands in a text that lives in global_data.
void Log(PF_InData* in, PF_Cmd command) {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  char number[8];
  std::snprintf(number, sizeof(number), "%d ", command);
  if (char* text = static_cast<char*>(*in->global_data); std::strlen(text) < 200) std::strcat(text, number);
}

// Greys out "Level" while "Tone" is off.
PF_Err UpdateUi(PF_InData* in, PF_ParamDef* parameters[]) {
  const void* suite = nullptr;
  if (const SPErr error = in->pica_basicP->AcquireSuite(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2, &suite))
    return error;
  const auto* update = static_cast<const PF_ParamUtilsSuite2*>(suite);
  PF_ParamDef level = *parameters[4];
  level.ui_flags = parameters[3]->u.bd.value ? 0 : PF_PUI_DISABLED;
  const PF_Err error = update->PF_UpdateParamUI(in->effect_ref, 4, &level);
  const bool refused = update->PF_UpdateParamUI(in->effect_ref, 0, &level) == PF_Err_INVALID_INDEX &&
                       update->PF_UpdateParamUI(in->effect_ref, 9, &level) == PF_Err_INVALID_INDEX;
  in->pica_basicP->ReleaseSuite(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion2);
  return refused ? error : PF_Err_INVALID_INDEX;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) PF_Err PluginEntry(PF_Cmd command, PF_InData* in, PF_OutData* out,
                                                                     PF_ParamDef* parameters[], PF_LayerDef* output,
                                                                     void*) {
  if (command == PF_Cmd_GLOBAL_SETUP) {
    out->global_data = in->utils->host_new_handle(256);
    std::memset(*out->global_data, 0, 256);
    return PF_Err_NONE;
  }
  Log(in, command);
  switch (command) {
    case PF_Cmd_GLOBAL_SETDOWN:
      in->utils->host_dispose_handle(in->global_data);
      return PF_Err_NONE;
    case PF_Cmd_ABOUT:
      std::strcpy(out->return_msg, "Fake 1.0\rFor tests");
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      if (in->version.major == 99 && in->version.minor == kFailSetup) return PF_Err_OUT_OF_MEMORY;
      return Define(in, out);
    case PF_Cmd_SEQUENCE_SETUP:
      out->sequence_data = in->utils->host_new_handle(1);
      return in->inter.add_param(in->effect_ref, -1, nullptr) ? PF_Err_NONE : PF_Err_INVALID_CALLBACK;
    case PF_Cmd_SEQUENCE_SETDOWN:
      in->utils->host_dispose_handle(in->sequence_data);
      out->sequence_data = nullptr;
      return PF_Err_NONE;
    case PF_Cmd_FRAME_SETUP:
      if (parameters[1]->u.pd.value == kGrow) out->width = output->width + 1;
      return in->sequence_data ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED;
    case PF_Cmd_RENDER:
      return Render(in, out, parameters, output);
    case PF_Cmd_UPDATE_PARAMS_UI:
      return UpdateUi(in, parameters);
    default:
      return PF_Err_NONE;
  }
}
