#include "default_settings.h"

#include <cstddef>
#include <cstring>

#include "host/param_table.h"

namespace quentara {
namespace {

using Nivra::ParamKind;

PF_ParamDef Param(const Nivra::ParamRow& row, double value) {
  PF_ParamDef def;
  std::memset(&def, 0, sizeof def);
  if (row.kind == ParamKind::Popup) def.u.pd.value = static_cast<A_long>(value);
  if (row.kind == ParamKind::Slider) def.u.sd.value = static_cast<A_long>(value);
  if (row.kind == ParamKind::CheckBox) def.u.bd.value = static_cast<A_long>(value);
  if (row.kind == ParamKind::Fixed || row.kind == ParamKind::Percent)
    def.u.fd.value = static_cast<PF_Fixed>(value * 65536.0);
  const auto level = static_cast<A_u_char>(value * 255);
  if (row.kind == ParamKind::Color) def.u.cd.value = PF_Pixel{255, level, level, level};
  return def;
}

}  // namespace

void ReadDefaults(const std::vector<Choice>& changes, Nivra::FrameSettings& frame) {
  std::vector<PF_ParamDef> params(1);  // begins with the input layer, which nobody reads
  for (const Nivra::ParamRow& row : Nivra::kParamTable) {
    if (Nivra::IsGroup(row.kind)) continue;
    double value = row.initial;
    for (const Choice& change : changes)
      if (change.id == row.id) value = change.value;
    params.push_back(Param(row, value));
  }
  std::vector<const PF_ParamDef*> list;
  for (const PF_ParamDef& param : params) list.push_back(&param);
  Nivra::ReadSettings(Nivra::ParamCursor(list.data(), false), 1.0f, frame);
}

}  // namespace quentara
