/// The utility callbacks of the published effect interface.
///
/// Callbacks without arguments here are those that the effect does not use; they keep their place.
#pragma once

#include "AE_Effect.h"

enum { PF_Iterations_ONCE_PER_PROCESSOR = -1 };

typedef struct {
  double (*atan)(double);
  double (*atan2)(double y, double x);
  double (*ceil)(double);
  double (*cos)(double);
  double (*exp)(double);
  double (*fabs)(double);
  double (*floor)(double);
  double (*fmod)(double x, double y);
  double (*hypot)(double x, double y);
  double (*log)(double);
  double (*log10)(double);
  double (*pow)(double x, double y);
  double (*sin)(double);
  double (*sqrt)(double);
  double (*tan)(double);
  int (*sprintf)(A_char*, const A_char*, ...);
  A_char* (*strcpy)(A_char*, const A_char*);
  double (*asin)(double);
  double (*acos)(double);
  A_long reserved[1];
} PF_ANSICallbacks;

typedef struct {
  void (*unused[8])(void);
} PF_ColorCallbacks;

typedef struct PF_UtilCallbacks {
  PF_Err (*begin_sampling)(void);
  PF_Err (*subpixel_sample)(void);
  PF_Err (*area_sample)(void);
  void* get_batch_func_is_deprecated;
  PF_Err (*end_sampling)(void);
  PF_Err (*composite_rect)(void);
  PF_Err (*blend)(void);
  PF_Err (*convolve)(void);
  PF_Err (*copy)(void);
  PF_Err (*fill)(void);
  PF_Err (*gaussian_kernel)(void);
  PF_Err (*iterate)(void);
  PF_Err (*premultiply)(void);
  PF_Err (*premultiply_color)(void);
  PF_Err (*new_world)(void);
  PF_Err (*dispose_world)(void);
  PF_Err (*iterate_origin)(void);
  PF_Err (*iterate_lut)(void);
  PF_Err (*transfer_rect)(void);
  PF_Err (*transform_world)(void);
  PF_Handle (*host_new_handle)(A_HandleSize size);  ///< null when there is no memory
  void* (*host_lock_handle)(PF_Handle pf_handle);
  void (*host_unlock_handle)(PF_Handle pf_handle);
  void (*host_dispose_handle)(PF_Handle pf_handle);
  PF_Err (*get_callback_addr)(void);
  PF_Err (*app)(void);
  PF_ANSICallbacks ansi;
  PF_ColorCallbacks colorCB;
  PF_Err (*get_platform_data)(void);
  A_HandleSize (*host_get_handle_size)(PF_Handle pf_handle);
  PF_Err (*iterate_origin_non_clip_src)(void);
  /// Calls fn_func for i = 0 .. iterations - 1, on threads of the host; a result other than 0 ends the loop.
  PF_Err (*iterate_generic)(A_long iterations, void* refcon,
                            PF_Err (*fn_func)(void* refcon, A_long thread_index, A_long i, A_long iterations));
  PF_Err (*host_resize_handle)(A_HandleSize new_size, PF_Handle* handle);
  PF_Err (*subpixel_sample16)(void);
  PF_Err (*area_sample16)(void);
  PF_Err (*fill16)(void);
  PF_Err (*premultiply_color16)(void);
  PF_Err (*iterate16)(void);
  PF_Err (*iterate_origin16)(void);
  PF_Err (*iterate_origin_non_clip_src16)(void);
  PF_Err (*get_pixel_data8)(void);
  PF_Err (*get_pixel_data16)(void);
  A_long reserved[1];
} PF_UtilCallbacks;
