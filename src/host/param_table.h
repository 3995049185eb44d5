/// The parameters of the effect, as data: one row for each, in the order in which the host shows them.
///
/// Projects store the identifiers, so a row's identifier never changes. The place of a parameter in the host's list
/// follows from the table: index 0 is the input layer, and a host without groups has no entries for the group rows.
#pragma once

#include <array>

#include "AE_Effect.h"

namespace Nivra {

enum class ParamKind { Popup, Slider, Fixed, Percent, CheckBox, Color, GroupStart, GroupEnd };

constexpr bool IsGroup(ParamKind kind) {
  return kind == ParamKind::GroupStart || kind == ParamKind::GroupEnd;
}

struct ParamRange {
  int min = 0;
  int max = 0;
};

struct ParamRow {
  ParamKind kind = ParamKind::GroupEnd;
  A_long id = 0;
  const char* name = "";
  double initial = 0.0;      ///< popup: 1-based choice; percent: 0..100; check box: 0 or 1; colour: a grey, 0..1
  ParamRange sliderRange;    ///< what the slider spans
  ParamRange validRange;     ///< what may be typed in
  const char* choices = "";  ///< of a popup, separated by '|'
};

using ParamTable = std::array<ParamRow, 159>;

extern const ParamTable kParamTable;

}  // namespace Nivra
