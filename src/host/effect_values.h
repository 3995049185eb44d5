/// What the effect tells the host about itself, in code and in the description that the host reads without running it.
#pragma once

#include "AE_Effect.h"

namespace Nivra::EffectValues {

constexpr int kVersionMajor = 2;
constexpr int kVersionMinor = 1;
constexpr int kVersionBugfix = 7;
constexpr A_u_long kVersion = PF_VERSION(kVersionMajor, kVersionMinor, kVersionBugfix, PF_Stage_RELEASE, 0);

constexpr PF_OutFlags kOutFlags =
    PF_OutFlag_SEND_UPDATE_PARAMS_UI | PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_I_SHRINK_BUFFER;
constexpr PF_OutFlags2 kOutFlags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS |
                                    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG |
                                    PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER;

// Projects and the host's plug-in cache hold these.
static_assert(kVersion == 0x0010BE00 && kOutFlags == 0x06001000 && kOutFlags2 == 0x00008009);

constexpr char kName[] = "Velmor!";
constexpr char kHostName[] = "Velmor! Quentara";
constexpr char kCategory[] = "Kestrane Velmor";
constexpr char kMatchName[] = "Ardelis Velmor! Quentara";
constexpr char kEntryPoint[] = "PluginEntry";
constexpr int kPiplVersion = 2;
constexpr int kInterfaceVersion = 13;
constexpr char kPurpose[] = "Turns live-action footage into drawn and painted pictures.";

}  // namespace Nivra::EffectValues
