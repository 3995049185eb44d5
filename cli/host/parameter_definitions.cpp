#include "host/parameter_definitions.h"

#include <cassert>
#include <cstring>
#include <sstream>

namespace quentara::cli {
namespace {

double FromFixed(PF_Fixed fixed) {
  return fixed / 65536.0;
}

std::vector<std::string> SplitChoices(const std::string& text) {
  std::vector<std::string> choices;
  std::istringstream stream(text);
  for (std::string choice; std::getline(stream, choice, '|');) choices.push_back(choice);
  return choices;
}

template <std::size_t size>
std::string ToString(const A_char (&text)[size]) {
  return std::string(text, strnlen(text, size));
}

void DescribeFixed(const PF_FixedSliderDef& record, Parameter& parameter) {
  const bool percent = (record.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
  parameter.kind = percent ? ParameterKind::Percent : ParameterKind::Fixed;
  parameter.standard.number = FromFixed(record.dephault);
  parameter.valid = {FromFixed(record.valid_min), FromFixed(record.valid_max)};
  parameter.slider = {FromFixed(record.slider_min), FromFixed(record.slider_max)};
}

Parameter Describe(const ParameterDefinition& definition) {
  const PF_ParamDef& record = definition.record;
  Parameter parameter;
  parameter.id = record.uu.id;
  parameter.name = ToString(record.name);
  switch (record.param_type) {
    case PF_Param_POPUP:
      parameter.kind = ParameterKind::Popup;
      parameter.standard.number = record.u.pd.dephault;
      parameter.choices = SplitChoices(definition.text);
      break;
    case PF_Param_SLIDER: {
      const PF_SliderDef& slider = record.u.sd;
      parameter.kind = ParameterKind::Slider;
      parameter.standard.number = slider.dephault;
      parameter.valid = {double(slider.valid_min), double(slider.valid_max)};
      parameter.slider = {double(slider.slider_min), double(slider.slider_max)};
      break;
    }
    case PF_Param_FIX_SLIDER:
      DescribeFixed(record.u.fd, parameter);
      break;
    case PF_Param_CHECKBOX:
      parameter.kind = ParameterKind::CheckBox;
      parameter.name = definition.text;
      parameter.standard.number = record.u.bd.dephault;
      break;
    case PF_Param_COLOR: {
      const PF_Pixel& colour = record.u.cd.dephault;
      parameter.kind = ParameterKind::Colour;
      parameter.standard.colour = {colour.red, colour.green, colour.blue};
      break;
    }
    case PF_Param_GROUP_START:
      parameter.kind = ParameterKind::GroupStart;
      break;
    default:
      parameter.kind = ParameterKind::GroupEnd;
  }
  return parameter;
}

bool HasItsChoices(const PF_PopupDef& popup, const std::string& text) {
  const std::size_t choices = SplitChoices(text).size();
  return choices == static_cast<std::size_t>(popup.num_choices) && popup.dephault >= 1 &&
         popup.dephault <= popup.num_choices;
}

void StoreValue(const Value& value, PF_ParamDef& record) {
  switch (record.param_type) {
    case PF_Param_POPUP:
      record.u.pd.value = static_cast<A_long>(value.number);
      break;
    case PF_Param_SLIDER:
      record.u.sd.value = static_cast<A_long>(value.number);
      break;
    case PF_Param_FIX_SLIDER:
      record.u.fd.value = static_cast<PF_Fixed>(value.number * 65536.0);
      break;
    case PF_Param_CHECKBOX:
      record.u.bd.value = value.number != 0;
      break;
    case PF_Param_COLOR:
      record.u.cd.value = {255, value.colour[0], value.colour[1], value.colour[2]};
      break;
    default:
      break;
  }
}

}  // namespace

PF_Err CopyDefinition(const PF_ParamDef& record, ParameterDefinition& copy) {
  copy.record = record;
  copy.text.clear();
  switch (record.param_type) {
    case PF_Param_POPUP:
      if (record.u.pd.u.namesptr) copy.text = record.u.pd.u.namesptr;
      return HasItsChoices(record.u.pd, copy.text) ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
    case PF_Param_CHECKBOX:
      if (record.u.bd.u.nameptr) copy.text = record.u.bd.u.nameptr;
      return PF_Err_NONE;
    case PF_Param_SLIDER:
    case PF_Param_FIX_SLIDER:
    case PF_Param_COLOR:
    case PF_Param_GROUP_START:
    case PF_Param_GROUP_END:
      return PF_Err_NONE;
    default:
      return PF_Err_UNRECOGNIZED_PARAM_TYPE;
  }
}

std::vector<Parameter> DescribeDefinitions(const std::vector<ParameterDefinition>& definitions) {
  std::vector<Parameter> parameters;
  std::vector<std::string> openGroups;
  for (const ParameterDefinition& definition : definitions) {
    Parameter parameter = Describe(definition);
    parameter.index = static_cast<int>(parameters.size()) + 1;
    if (parameter.kind == ParameterKind::GroupEnd && !openGroups.empty()) openGroups.pop_back();
    if (!openGroups.empty()) parameter.group = openGroups.back();
    if (parameter.kind == ParameterKind::GroupStart) openGroups.push_back(parameter.name);
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

std::vector<PF_ParamDef> MakeRecords(const std::vector<ParameterDefinition>& definitions,
                                     const ParameterValues& values) {
  assert(values.size() == definitions.size());
  std::vector<PF_ParamDef> records(1);
  records.front().param_type = PF_Param_LAYER;
  for (std::size_t i = 0; i < definitions.size(); ++i) {
    PF_ParamDef record = definitions[i].record;
    if (record.param_type == PF_Param_POPUP) record.u.pd.u.namesptr = definitions[i].text.c_str();
    if (record.param_type == PF_Param_CHECKBOX) record.u.bd.u.nameptr = definitions[i].text.c_str();
    StoreValue(values[i], record);
    records.push_back(record);
  }
  return records;
}

}  // namespace quentara::cli
