/// The published effect interface: commands, flags, worlds, parameters and the two records of every call.
///
/// The host owns these records, so their layout is fixed to the byte. Fields that the effect does not use keep their
/// place, with a type of the right size.
#pragma once

#include "A.h"
#include "SPBasic.h"

struct PF_UtilCallbacks;

#define PF_MAX_EFFECT_NAME_LEN 31
#define PF_MAX_EFFECT_MSG_LEN 255
#define PF_MAX_EFFECT_PARAM_NAME_LEN 31

typedef A_long PF_Err;
typedef A_long PF_Cmd;
typedef A_long PF_ParamType;
typedef A_long PF_ParamIndex;
typedef A_long PF_ParamValue;
typedef A_long PF_Quality;
typedef A_long PF_Field;
typedef A_long PF_InFlags;
typedef A_long PF_OutFlags;
typedef A_long PF_OutFlags2;
typedef A_long PF_WorldFlags;
typedef A_long PF_ParamFlags;
typedef A_long PF_ParamUIFlags;
typedef A_u_short PF_ValueDisplayFlags;
typedef A_long PF_Fixed;  ///< 16.16
typedef double PF_FpLong;
typedef float PF_FpShort;
typedef A_Boolean PF_Boolean;
typedef void** PF_Handle;
typedef struct PF_ProgressInfo* PF_ProgPtr;

enum {
  PF_Cmd_ABOUT = 0,
  PF_Cmd_GLOBAL_SETUP = 1,
  PF_Cmd_GLOBAL_SETDOWN = 3,
  PF_Cmd_PARAMS_SETUP = 4,
  PF_Cmd_SEQUENCE_SETUP = 5,
  PF_Cmd_SEQUENCE_RESETUP = 6,
  PF_Cmd_SEQUENCE_FLATTEN = 7,
  PF_Cmd_SEQUENCE_SETDOWN = 8,
  PF_Cmd_DO_DIALOG = 9,
  PF_Cmd_FRAME_SETUP = 10,
  PF_Cmd_RENDER = 11,
  PF_Cmd_FRAME_SETDOWN = 12,
  PF_Cmd_USER_CHANGED_PARAM = 13,
  PF_Cmd_UPDATE_PARAMS_UI = 14,
  PF_Cmd_EVENT = 15,
  PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16,
  PF_Cmd_COMPLETELY_GENERAL = 17,
  PF_Cmd_QUERY_DYNAMIC_FLAGS = 18,
  PF_Cmd_AUDIO_RENDER = 19,
  PF_Cmd_AUDIO_SETUP = 20,
  PF_Cmd_AUDIO_SETDOWN = 21,
  PF_Cmd_ARBITRARY_CALLBACK = 22,
  PF_Cmd_SMART_PRE_RENDER = 23,
  PF_Cmd_SMART_RENDER = 24
};

enum {
  PF_Err_NONE = 0,
  PF_Err_OUT_OF_MEMORY = 4,
  PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
  PF_Err_INVALID_INDEX = 513,
  PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
  PF_Err_INVALID_CALLBACK = 515,
  PF_Err_BAD_CALLBACK_PARAM = 516,
  PF_Interrupt_CANCEL = 517
};

enum {
  PF_OutFlag_NONE = 0,
  PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8,
  PF_OutFlag_I_SHRINK_BUFFER = 1 << 12,
  PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25,
  PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26
};

enum {
  PF_OutFlag2_NONE = 0,
  PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 1 << 0,
  PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 1 << 3,
  PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10,
  PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12,
  PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER = 1 << 15,
  PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27
};

enum { PF_Stage_DEVELOP = 0, PF_Stage_ALPHA = 1, PF_Stage_BETA = 2, PF_Stage_RELEASE = 3 };

#define PF_VERSION(version, subversion, bugfix, stage, build)                                  \
  (((A_u_long)(version) << 19) | ((A_u_long)(subversion) << 15) | ((A_u_long)(bugfix) << 11) | \
   ((A_u_long)(stage) << 9) | ((A_u_long)(build)&0x1ff))

typedef struct {
  A_u_char alpha, red, green, blue;
} PF_Pixel;
typedef PF_Pixel PF_Pixel8;
typedef PF_Pixel* PF_PixelPtr;

/// White is 32768.
typedef struct {
  A_u_short alpha, red, green, blue;
} PF_Pixel16;

typedef struct {
  A_long num;
  A_u_long den;
} PF_RationalScale;

typedef struct {
  A_short major, minor;
} PF_SpecVersion;

typedef struct {
  A_long h, v;
} PF_Point;

typedef struct {
  A_long left, top, right, bottom;
} PF_LRect;
typedef PF_LRect PF_Rect;
typedef PF_LRect PF_UnionableRect;

typedef struct {
  PF_FpLong rate;
  A_short num_channels, format, sample_size;
} PF_SoundFormatInfo;

typedef struct {
  PF_SoundFormatInfo fi;
  A_long num_samples;
  void* dataP;
} PF_SoundWorld;

enum { PF_WorldFlag_DEEP = 1 << 0, PF_WorldFlag_WRITEABLE = 1 << 1 };

/// A layer or picture. Rows are `rowbytes` apart, which may be more than the pixels of a row take.
typedef struct PF_LayerDef {
  void* reserved0;
  void* reserved1;
  PF_WorldFlags world_flags;
  PF_PixelPtr data;
  A_long rowbytes;
  A_long width;
  A_long height;
  PF_UnionableRect extent_hint;
  void* platform_ref;
  A_long reserved_long1;
  void* reserved_long4;
  PF_RationalScale pix_aspect_ratio;
  void* reserved_long2;
  A_long origin_x;
  A_long origin_y;
  A_long reserved_long3;
  A_long dephault;
} PF_LayerDef;
typedef PF_LayerDef PF_EffectWorld;
typedef PF_LayerDef PF_World;

enum {
  PF_Param_LAYER = 0,
  PF_Param_SLIDER = 1,
  PF_Param_FIX_SLIDER = 2,
  PF_Param_ANGLE = 3,
  PF_Param_CHECKBOX = 4,
  PF_Param_COLOR = 5,
  PF_Param_POINT = 6,
  PF_Param_POPUP = 7,
  PF_Param_CUSTOM = 8,
  PF_Param_NO_DATA = 9,
  PF_Param_FLOAT_SLIDER = 10,
  PF_Param_ARBITRARY_DATA = 11,
  PF_Param_PATH = 12,
  PF_Param_GROUP_START = 13,
  PF_Param_GROUP_END = 14,
  PF_Param_BUTTON = 15
};

enum {
  PF_ParamFlag_CANNOT_TIME_VARY = 1 << 1,
  PF_ParamFlag_CANNOT_INTERP = 1 << 2,
  PF_ParamFlag_COLLAPSE_TWIRLY = 1 << 5,
  PF_ParamFlag_START_COLLAPSED = 1 << 5,
  PF_ParamFlag_SUPERVISE = 1 << 6,
  PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 1 << 7
};

enum { PF_PUI_DISABLED = 1 << 5, PF_PUI_INVISIBLE = 1 << 9 };

enum { PF_ValueDisplayFlag_NONE = 0, PF_ValueDisplayFlag_PERCENT = 1 << 0, PF_ValueDisplayFlag_PIXEL = 1 << 1 };

typedef struct {
  PF_ParamValue value;
  A_char value_str[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  A_char value_desc[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  A_long valid_min, valid_max;
  A_long slider_min, slider_max;
  A_long dephault;
} PF_SliderDef;

typedef struct {
  PF_Fixed value;
  A_char value_str[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  A_char value_desc[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  PF_Fixed valid_min, valid_max;
  PF_Fixed slider_min, slider_max;
  PF_Fixed dephault;
  A_short precision;
  PF_ValueDisplayFlags display_flags;
} PF_FixedSliderDef;

typedef struct {
  PF_Fixed value;
  PF_Fixed dephault;
  PF_Fixed valid_min, valid_max;
} PF_AngleDef;

typedef struct {
  PF_ParamValue value;
  PF_Boolean dephault;
  PF_Boolean reserved;
  A_short reserved1;
  union {
    const A_char* nameptr;
  } u;
} PF_CheckBoxDef;

typedef struct {
  PF_Pixel value;
  PF_Pixel dephault;
} PF_ColorDef;

typedef struct {
  PF_ParamValue value;
  A_short num_choices;
  A_short dephault;
  union {
    const A_char* namesptr;
  } u;
} PF_PopupDef;

typedef union {
  PF_LayerDef ld;
  PF_SliderDef sd;
  PF_FixedSliderDef fd;
  PF_AngleDef ad;
  PF_CheckBoxDef bd;
  PF_ColorDef cd;
  PF_PopupDef pd;
} PF_ParamDefUnion;

typedef struct PF_ParamDef {
  union {
    A_long id;
    A_long change_flags;
  } uu;
  PF_ParamUIFlags ui_flags;
  A_short ui_width;
  A_short ui_height;
  PF_ParamType param_type;
  A_char name[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
  PF_ParamFlags flags;
  A_long unused;
  PF_ParamDefUnion u;
} PF_ParamDef;
typedef PF_ParamDef* PF_ParamDefPtr;
typedef PF_ParamDef* const* PF_ConstParamList;
typedef PF_ParamDef** PF_ParamList;

typedef struct {
  PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time, A_long time_step,
                           A_u_long time_scale, PF_ParamDef* param);
  PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
  PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr def);
  PF_Err (*abort)(PF_ProgPtr effect_ref);
  PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
  PF_Err (*register_ui)(PF_ProgPtr effect_ref, struct PF_CustomUIInfo* cust_info);
  PF_Err (*checkout_layer_audio)(void);
  PF_Err (*checkin_layer_audio)(void);
  PF_Err (*get_audio_data)(void);
  void* reserved_str[3];
  void* reserved[10];
} PF_InteractCallbacks;

typedef struct PF_InData {
  PF_InteractCallbacks inter;
  struct PF_UtilCallbacks* utils;
  PF_ProgPtr effect_ref;
  PF_Quality quality;
  PF_SpecVersion version;
  A_long serial_num;
  A_long appl_id;  ///< four-character code
  A_long num_params;
  A_long reserved;
  A_long what_cpu;
  A_long what_fpu;
  A_long current_time;
  A_long time_step;
  A_long total_time;
  A_long local_time_step;
  A_u_long time_scale;
  PF_Field field;
  PF_Fixed shutter_angle;
  A_long width;
  A_long height;
  PF_UnionableRect extent_hint;
  A_long output_origin_x;
  A_long output_origin_y;
  PF_RationalScale downsample_x;
  PF_RationalScale downsample_y;
  PF_RationalScale pixel_aspect_ratio;
  PF_InFlags in_flags;
  PF_Handle global_data;
  PF_Handle sequence_data;
  PF_Handle frame_data;
  A_long start_sampL;
  A_long dur_sampL;
  A_long total_sampL;
  PF_SoundWorld src_snd;
  SPBasicSuite* pica_basicP;
  A_long pre_effect_source_origin_x;
  A_long pre_effect_source_origin_y;
  PF_Fixed shutter_phase;
} PF_InData;

typedef struct PF_OutData {
  A_u_long my_version;
  A_char name[PF_MAX_EFFECT_NAME_LEN + 1];
  PF_Handle global_data;
  A_long num_params;
  PF_Handle sequence_data;
  A_long flat_sdata_size;
  PF_Handle frame_data;
  A_long width;
  A_long height;
  PF_Point origin;
  PF_OutFlags out_flags;
  A_char return_msg[PF_MAX_EFFECT_MSG_LEN + 1];
  A_long start_sampL;
  A_long dur_sampL;
  PF_SoundWorld dest_snd;
  PF_OutFlags2 out_flags2;
} PF_OutData;
