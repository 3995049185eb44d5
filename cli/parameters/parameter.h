/// A row of the effect's parameter list, and a value for it, free of the host interface's records.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quentara::cli {

enum class ParameterKind { Popup, Slider, Fixed, Percent, CheckBox, Colour, GroupStart, GroupEnd };

/// The kind's name for a reader: "popup", "check box", "group start" and so on.
const char* KindName(ParameterKind kind);

/// The setting of one parameter. A kind uses one of the two fields and leaves the other as it is.
struct Value {
  /// Popup: the choice, from 1. Slider: a whole number. Fixed and percent: in the unit that the user sees, a multiple
  /// of 1/65536. Check box: 0 or 1.
  double number = 0;
  std::array<std::uint8_t, 3> colour{};  ///< red, green, blue

  friend bool operator==(const Value& a, const Value& b) { return a.number == b.number && a.colour == b.colour; }
  friend bool operator!=(const Value& a, const Value& b) { return !(a == b); }
};

struct Interval {
  double low = 0;
  double high = 0;
};

struct Parameter {
  int index = 0;        ///< place in the host's list; 0 is the input layer, so the first row has 1
  std::int32_t id = 0;  ///< as projects store it
  std::string group;    ///< name of the enclosing group; empty for a row outside of any
  std::string name;     ///< of a group start the group's name; empty for a group end
  ParameterKind kind = ParameterKind::Slider;
  Value standard;                    ///< the default
  Interval valid;                    ///< of sliders, fixed numbers and percents
  Interval slider;                   ///< the part of `valid` that a slider covers
  std::vector<std::string> choices;  ///< of a popup

  bool HasValue() const { return kind != ParameterKind::GroupStart && kind != ParameterKind::GroupEnd; }
  /// Whether `valid` and `slider` bound its values.
  bool IsRanged() const {
    return kind == ParameterKind::Slider || kind == ParameterKind::Fixed || kind == ParameterKind::Percent;
  }
  /// "Group/Name", or the name alone outside of any group.
  std::string Path() const { return group.empty() ? name : group + "/" + name; }
};

/// The multiple of 1/65536 that the host interface stores for a number: the nearest towards zero.
double ToFixedPoint(double number);

/// Reads a value as a user writes it: a popup's choice (in any case) or its number, whole numbers, decimal numbers, a
/// percent with or without its sign, on/off/true/false/yes/no/1/0, a colour as #rrggbb or r,g,b.
/// @throws UsageError that names the parameter and says what it takes.
Value ParseValue(const Parameter& parameter, std::string_view text);

/// The shortest text that ParseValue reads back as `value`; a percent without its sign.
std::string FormatValue(const Parameter& parameter, const Value& value);

/// Says that the parameter does not take what is written, and what it takes.
std::string RefusalOf(const Parameter& parameter, const std::string& written);

/// What the parameter takes: "0 to 100", "Fast, High", "on or off", "#rrggbb or r,g,b".
std::string DescribeDomain(const Parameter& parameter);

}  // namespace quentara::cli
