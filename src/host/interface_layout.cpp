// The host owns the records of the interface. These checks hold for our own headers and for the vendor's alike.
#include <cstddef>
#include <type_traits>

#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "AE_EffectSuites.h"

namespace {

#define SIZE(type, bytes) static_assert(sizeof(type) == (bytes), #type)
#define PLACE(type, field, offset) static_assert(offsetof(type, field) == (offset), #type "::" #field)
#define SAME(type, other) static_assert(std::is_same_v<type, other>, #type)

SIZE(A_char, 1);
SIZE(A_short, 2);
SIZE(A_u_short, 2);
SIZE(A_long, 4);
SIZE(A_u_long, 4);
SIZE(A_Boolean, 1);
SIZE(A_HandleSize, 8);
SIZE(PF_Boolean, 1);
SIZE(PF_Err, 4);
SIZE(PF_Cmd, 4);
SIZE(PF_Fixed, 4);
SIZE(PF_ParamType, 4);
SIZE(PF_ValueDisplayFlags, 2);
SAME(PF_FpLong, double);
SAME(PF_FpShort, float);
SAME(PF_Handle, void**);
static_assert(A_long(-1) < 0 && A_u_long(-1) > 0 && A_HandleSize(-1) > 0, "signs");

SIZE(PF_Pixel, 4);
PLACE(PF_Pixel, alpha, 0);
PLACE(PF_Pixel, red, 1);
PLACE(PF_Pixel, green, 2);
PLACE(PF_Pixel, blue, 3);
SIZE(PF_Pixel16, 8);
PLACE(PF_Pixel16, red, 2);
PLACE(PF_Pixel16, blue, 6);
SIZE(PF_RationalScale, 8);
SIZE(PF_SpecVersion, 4);
PLACE(PF_SpecVersion, minor, 2);
SIZE(PF_Point, 8);
SIZE(PF_UnionableRect, 16);
SIZE(PF_SoundFormatInfo, 16);
SIZE(PF_SoundWorld, 32);

SIZE(PF_InteractCallbacks, 176);
PLACE(PF_InteractCallbacks, checkout_param, 0);
PLACE(PF_InteractCallbacks, add_param, 16);
PLACE(PF_InteractCallbacks, abort, 24);
PLACE(PF_InteractCallbacks, progress, 32);
PLACE(PF_InteractCallbacks, register_ui, 40);

SIZE(PF_InData, 408);
PLACE(PF_InData, inter, 0);
PLACE(PF_InData, utils, 176);
PLACE(PF_InData, effect_ref, 184);
PLACE(PF_InData, quality, 192);
PLACE(PF_InData, version, 196);
PLACE(PF_InData, serial_num, 200);
PLACE(PF_InData, appl_id, 204);
PLACE(PF_InData, num_params, 208);
PLACE(PF_InData, what_cpu, 216);
PLACE(PF_InData, what_fpu, 220);
PLACE(PF_InData, current_time, 224);
PLACE(PF_InData, time_step, 228);
PLACE(PF_InData, total_time, 232);
PLACE(PF_InData, local_time_step, 236);
PLACE(PF_InData, time_scale, 240);
PLACE(PF_InData, field, 244);
PLACE(PF_InData, shutter_angle, 248);
PLACE(PF_InData, width, 252);
PLACE(PF_InData, height, 256);
PLACE(PF_InData, extent_hint, 260);
PLACE(PF_InData, output_origin_x, 276);
PLACE(PF_InData, output_origin_y, 280);
PLACE(PF_InData, downsample_x, 284);
PLACE(PF_InData, downsample_y, 292);
PLACE(PF_InData, pixel_aspect_ratio, 300);
PLACE(PF_InData, in_flags, 308);
PLACE(PF_InData, global_data, 312);
PLACE(PF_InData, sequence_data, 320);
PLACE(PF_InData, frame_data, 328);
PLACE(PF_InData, start_sampL, 336);
PLACE(PF_InData, dur_sampL, 340);
PLACE(PF_InData, total_sampL, 344);
PLACE(PF_InData, src_snd, 352);
PLACE(PF_InData, pica_basicP, 384);
PLACE(PF_InData, pre_effect_source_origin_x, 392);
PLACE(PF_InData, pre_effect_source_origin_y, 396);
PLACE(PF_InData, shutter_phase, 400);

SIZE(PF_OutData, 408);
PLACE(PF_OutData, my_version, 0);
PLACE(PF_OutData, name, 4);
PLACE(PF_OutData, global_data, 40);
PLACE(PF_OutData, num_params, 48);
PLACE(PF_OutData, sequence_data, 56);
PLACE(PF_OutData, flat_sdata_size, 64);
PLACE(PF_OutData, frame_data, 72);
PLACE(PF_OutData, width, 80);
PLACE(PF_OutData, height, 84);
PLACE(PF_OutData, origin, 88);
PLACE(PF_OutData, out_flags, 96);
PLACE(PF_OutData, return_msg, 100);
PLACE(PF_OutData, start_sampL, 356);
PLACE(PF_OutData, dur_sampL, 360);
PLACE(PF_OutData, dest_snd, 368);
PLACE(PF_OutData, out_flags2, 400);

SIZE(PF_ANSICallbacks, 160);
PLACE(PF_ANSICallbacks, sprintf, 120);
PLACE(PF_ANSICallbacks, strcpy, 128);

SIZE(PF_UtilCallbacks, 552);
PLACE(PF_UtilCallbacks, host_new_handle, 160);
PLACE(PF_UtilCallbacks, host_lock_handle, 168);
PLACE(PF_UtilCallbacks, host_unlock_handle, 176);
PLACE(PF_UtilCallbacks, host_dispose_handle, 184);
PLACE(PF_UtilCallbacks, ansi, 208);
PLACE(PF_UtilCallbacks, colorCB, 368);
PLACE(PF_UtilCallbacks, host_get_handle_size, 440);
PLACE(PF_UtilCallbacks, iterate_generic, 456);
PLACE(PF_UtilCallbacks, host_resize_handle, 464);
PLACE(PF_UtilCallbacks, reserved, 544);
static_assert(PF_Iterations_ONCE_PER_PROCESSOR == -1, "PF_Iterations_ONCE_PER_PROCESSOR");

SIZE(PF_EffectWorld, 120);
SAME(PF_EffectWorld, PF_LayerDef);
PLACE(PF_LayerDef, world_flags, 16);
PLACE(PF_LayerDef, data, 24);
PLACE(PF_LayerDef, rowbytes, 32);
PLACE(PF_LayerDef, width, 36);
PLACE(PF_LayerDef, height, 40);
PLACE(PF_LayerDef, extent_hint, 44);
PLACE(PF_LayerDef, platform_ref, 64);
PLACE(PF_LayerDef, pix_aspect_ratio, 88);
PLACE(PF_LayerDef, origin_x, 104);
PLACE(PF_LayerDef, origin_y, 108);
PLACE(PF_LayerDef, dephault, 116);

SIZE(PF_ParamDef, 176);
PLACE(PF_ParamDef, uu, 0);
PLACE(PF_ParamDef, ui_flags, 4);
PLACE(PF_ParamDef, ui_width, 8);
PLACE(PF_ParamDef, ui_height, 10);
PLACE(PF_ParamDef, param_type, 12);
PLACE(PF_ParamDef, name, 16);
PLACE(PF_ParamDef, flags, 48);
PLACE(PF_ParamDef, u, 56);

SIZE(PF_SliderDef, 88);
PLACE(PF_SliderDef, value_str, 4);
PLACE(PF_SliderDef, value_desc, 36);
PLACE(PF_SliderDef, valid_min, 68);
PLACE(PF_SliderDef, valid_max, 72);
PLACE(PF_SliderDef, slider_min, 76);
PLACE(PF_SliderDef, slider_max, 80);
PLACE(PF_SliderDef, dephault, 84);
SIZE(PF_FixedSliderDef, 92);
PLACE(PF_FixedSliderDef, valid_min, 68);
PLACE(PF_FixedSliderDef, slider_max, 80);
PLACE(PF_FixedSliderDef, dephault, 84);
PLACE(PF_FixedSliderDef, precision, 88);
PLACE(PF_FixedSliderDef, display_flags, 90);
SIZE(PF_AngleDef, 16);
SIZE(PF_CheckBoxDef, 16);
PLACE(PF_CheckBoxDef, dephault, 4);
PLACE(PF_CheckBoxDef, u, 8);
SIZE(PF_ColorDef, 8);
PLACE(PF_ColorDef, dephault, 4);
SIZE(PF_PopupDef, 16);
PLACE(PF_PopupDef, num_choices, 4);
PLACE(PF_PopupDef, dephault, 6);
PLACE(PF_PopupDef, u, 8);

SIZE(SPBasicSuite, 56);
PLACE(SPBasicSuite, AcquireSuite, 0);
PLACE(SPBasicSuite, ReleaseSuite, 8);

}  // namespace
