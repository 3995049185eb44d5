/// The suite by which an effect changes how its parameters are shown.
#pragma once

#include "AE_Effect.h"

#define kPFParamUtilsSuite "PF Param Utils Suite"
#define kPFParamUtilsSuiteVersion2 2

/// Version 2. Only the first callback is used; the others keep their place.
typedef struct PF_ParamUtilsSuite2 {
  PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, const PF_ParamDef* def);
  PF_Err (*PF_GetCurrentState)(void);
  PF_Err (*PF_HasParamChanged)(void);
  PF_Err (*PF_HaveInputsChangedOverTimeSpan)(void);
  PF_Err (*PF_IsIdenticalCheckout)(void);
  PF_Err (*PF_FindKeyframeTime)(void);
  PF_Err (*PF_GetKeyframeCount)(void);
  PF_Err (*PF_CheckoutKeyframe)(void);
  PF_Err (*PF_CheckinKeyframe)(void);
  PF_Err (*PF_KeyIndexToTime)(void);
} PF_ParamUtilsSuite2;
