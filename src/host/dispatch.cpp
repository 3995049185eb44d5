#include "host/dispatch.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "AE_EffectCB.h"
#include "host/effect_values.h"
#include "host/param_definition.h"
#include "host/plugin_nivra.h"
#include "host/render_command.h"
#include "host/update_ui_command.h"
#include "platform/default_arithmetic.h"

namespace Nivra {
namespace {

constexpr A_long kKeyGHost = 0x4B657947;

using Message = A_char[PF_MAX_EFFECT_MSG_LEN + 1];

void CutToFit(const char* text, Message& message) {
  std::snprintf(message, sizeof message, "%s", text);
}

void About(const PF_InData& inData, PF_OutData& outData) {
  using namespace EffectValues;
  Message text;
  std::snprintf(text, sizeof text, "%s %d.%d.%d\r%s", kName, kVersionMajor, kVersionMinor, kVersionBugfix, kPurpose);
  if (inData.appl_id == kKeyGHost)
    CopyAsAscii(text, outData.return_msg);
  else
    inData.utils->ansi.strcpy(outData.return_msg, text);
}

void GlobalSetup(PF_OutData& outData) {
  outData.my_version = EffectValues::kVersion;
  outData.out_flags = EffectValues::kOutFlags;
  outData.out_flags2 = EffectValues::kOutFlags2;
}

PF_Err ParamsSetup(PF_InData* inData, PF_OutData& outData) {
  EffectContext context(inData, nullptr);
  try {
    DefineParams(context);
  } catch (const PF_Err hostError) {
    return hostError;
  }
  outData.num_params = context.paramCount;
  return PF_Err_NONE;
}

PF_Err Fail(PF_OutData& outData, const char* text) {
  CutToFit(text, outData.return_msg);
  outData.out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
  return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace

void CopyAsAscii(const char* text, Message& message) {
  std::string ascii;
  for (; *text != '\0'; ++text) {
    const auto byte = static_cast<unsigned char>(*text);
    if (byte == 0x99)
      ascii += "(R)";
    else if (byte == 0xA9)
      ascii += "(C)";
    else
      ascii += *text;
  }
  CutToFit(ascii.c_str(), message);
}

PF_Err Dispatch(PF_Cmd command, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef* output,
                void*) noexcept {
  const quentara::platform::DefaultArithmetic arithmetic;
  try {
    switch (command) {
      case PF_Cmd_ABOUT:
        About(*inData, *outData);
        return PF_Err_NONE;
      case PF_Cmd_GLOBAL_SETUP:
        GlobalSetup(*outData);
        return PF_Err_NONE;
      case PF_Cmd_PARAMS_SETUP:
        return ParamsSetup(inData, *outData);
      case PF_Cmd_RENDER:
        return RenderCommand(inData, params, *output);
      case PF_Cmd_UPDATE_PARAMS_UI:
        UpdateParamsUi(inData, params, /*suites=*/inData->appl_id != kKeyGHost);
        return PF_Err_NONE;
      default:
        return PF_Err_NONE;
    }
  } catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
  } catch (const std::exception& error) {
    return Fail(*outData, error.what());
  } catch (...) {
    return Fail(*outData, "An unknown error occurred.");
  }
}

}  // namespace Nivra
