#include "host/param_definition.h"

#include <algorithm>
#include <cstring>

namespace Nivra {
namespace {

PF_Fixed ToFixed(double value) {
  return static_cast<PF_Fixed>(value * 65536.0);
}

void FillPopup(const ParamRow& row, PF_PopupDef& def) {
  const char* const end = row.choices + std::strlen(row.choices);
  def.num_choices = static_cast<A_short>(std::count(row.choices, end, '|') + 1);
  def.value = static_cast<A_long>(row.initial);
  def.dephault = static_cast<A_short>(row.initial);
  def.u.namesptr = row.choices;
}

void FillSlider(const ParamRow& row, PF_SliderDef& def) {
  def.value = def.dephault = static_cast<A_long>(row.initial);
  def.slider_min = row.sliderRange.min;
  def.slider_max = row.sliderRange.max;
  def.valid_min = row.validRange.min;
  def.valid_max = row.validRange.max;
}

void FillFixed(const ParamRow& row, PF_FixedSliderDef& def) {
  def.value = def.dephault = ToFixed(row.initial);
  def.slider_min = ToFixed(row.sliderRange.min);
  def.slider_max = ToFixed(row.sliderRange.max);
  def.valid_min = ToFixed(row.validRange.min);
  def.valid_max = ToFixed(row.validRange.max);
  def.precision = 2;
}

void FillPercent(const ParamRow& row, PF_FixedSliderDef& def) {
  FillFixed(row, def);
  def.precision = 1;
  def.display_flags |= PF_ValueDisplayFlag_PERCENT;
}

// The name stands beside the box, where the host expects it, and not in the column of names.
void FillCheckBox(const ParamRow& row, PF_CheckBoxDef& def) {
  def.value = static_cast<A_long>(row.initial);
  def.dephault = static_cast<PF_Boolean>(row.initial);
  def.u.nameptr = row.name;
}

void FillColor(const ParamRow& row, PF_ColorDef& def) {
  const auto level = static_cast<A_u_char>(row.initial * 255);
  def.value = def.dephault = PF_Pixel{255, level, level, level};
}

PF_ParamType FillKind(const ParamRow& row, PF_ParamDefUnion& def) {
  switch (row.kind) {
    case ParamKind::Popup:
      return FillPopup(row, def.pd), PF_Param_POPUP;
    case ParamKind::Slider:
      return FillSlider(row, def.sd), PF_Param_SLIDER;
    case ParamKind::Fixed:
      return FillFixed(row, def.fd), PF_Param_FIX_SLIDER;
    case ParamKind::Percent:
      return FillPercent(row, def.fd), PF_Param_FIX_SLIDER;
    case ParamKind::CheckBox:
      return FillCheckBox(row, def.bd), PF_Param_CHECKBOX;
    case ParamKind::Color:
      return FillColor(row, def.cd), PF_Param_COLOR;
    case ParamKind::GroupStart:
      return PF_Param_GROUP_START;
    case ParamKind::GroupEnd:
      break;
  }
  return PF_Param_GROUP_END;
}

PF_ParamDef Definition(const ParamRow& row) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  def.uu.id = row.id;
  def.param_type = FillKind(row, def.u);
  if (row.kind != ParamKind::GroupEnd) def.flags = PF_ParamFlag_START_COLLAPSED;
  if (row.kind != ParamKind::CheckBox) std::strncpy(def.name, row.name, sizeof def.name - 1);
  return def;
}

}  // namespace

void DefineParams(EffectContext& context) {
  const PF_InData& inData = *context.host.inData();
  for (const ParamRow& row : kParamTable) {
    if (IsGroup(row.kind) && !context.host.HasGroups()) continue;
    PF_ParamDef def = Definition(row);
    const PF_Err error = inData.inter.add_param(inData.effect_ref, -1, &def);
    if (error != PF_Err_NONE) throw error;
    ++context.paramCount;
  }
}

}  // namespace Nivra
