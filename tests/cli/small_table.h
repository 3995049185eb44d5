/// A parameter table with a row of every kind.
#pragma once

#include "parameters/parameter_table.h"

namespace quentara::cli {

inline ParameterTable SmallTable() {
  using Kind = ParameterKind;
  std::vector<Parameter> rows;
  const auto add = [&](int id, const char* group, const char* name, Kind kind, Interval valid = {}) {
    rows.push_back({static_cast<int>(rows.size()) + 1, id, group, name, kind, {}, valid, valid, {}});
  };
  add(6, "", "Roto", Kind::Popup);
  rows[0].choices = {"Flat Shaded", "No Roto", "2"};
  rows[0].standard.number = 1;
  add(67, "", "Flat Shaded", Kind::GroupStart);
  add(7, "Flat Shaded", "Flatness", Kind::Slider, {0, 100});
  add(43, "Flat Shaded", "Strength", Kind::Fixed, {0, 5});
  add(68, "Flat Shaded", "", Kind::GroupEnd);
  add(107, "", "Soft Outlines", Kind::GroupStart);
  add(22, "Soft Outlines", "Soft Outlines", Kind::CheckBox);
  add(23, "Soft Outlines", "Strength", Kind::Percent, {0, 100});
  add(24, "Soft Outlines", "Reuse", Kind::CheckBox);
  add(50, "Dots", "Dots", Kind::CheckBox);
  add(17, "Color Effects", "Outline Color", Kind::Colour);
  return ParameterTable(rows);
}

}  // namespace quentara::cli
