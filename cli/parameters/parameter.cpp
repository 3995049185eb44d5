#include "parameters/parameter.h"

#include <cmath>
#include <cstdio>
#include <optional>

#include "errors.h"
#include "parameters/text.h"

namespace quentara::cli {
namespace {

std::string ShortestFixed(double number) {
  // A multiple of 1/65536 has at most 16 decimals, so the last turn always reads back.
  char text[64];
  for (int decimals = 0; decimals <= 16; ++decimals) {
    std::snprintf(text, sizeof(text), "%.*f", decimals, number);
    if (ToFixedPoint(*ToNumber(text)) == number) break;
  }
  return text;
}

std::string FormatColour(const std::array<std::uint8_t, 3>& colour) {
  char text[8];
  std::snprintf(text, sizeof(text), "#%02x%02x%02x", colour[0], colour[1], colour[2]);
  return text;
}

std::optional<Value> ReadPopup(const Parameter& parameter, std::string_view text) {
  for (std::size_t i = 0; i < parameter.choices.size(); ++i)
    if (SameText(parameter.choices[i], text)) return Value{static_cast<double>(i + 1), {}};
  const std::optional<int> place = ToInteger(text);
  if (!place || *place < 1 || *place > static_cast<int>(parameter.choices.size())) return std::nullopt;
  return Value{static_cast<double>(*place), {}};
}

std::optional<Value> ReadCheckBox(std::string_view text) {
  for (const char* on : {"on", "true", "yes", "1"})
    if (SameText(text, on)) return Value{1, {}};
  for (const char* off : {"off", "false", "no", "0"})
    if (SameText(text, off)) return Value{0, {}};
  return std::nullopt;
}

std::optional<Value> ReadHexColour(std::string_view text) {
  if (text.size() != 7 || text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string_view::npos)
    return std::nullopt;
  const unsigned long bits = std::stoul(std::string(text.substr(1)), nullptr, 16);
  return Value{0,
               {static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 8 & 255),
                static_cast<std::uint8_t>(bits & 255)}};
}

std::optional<Value> ReadColour(std::string_view text) {
  if (!text.empty() && text.front() == '#') return ReadHexColour(text);
  Value value;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t comma = text.find(',');
    if ((comma == std::string_view::npos) != (i == 2)) return std::nullopt;
    const std::optional<int> channel = ToInteger(Trimmed(text.substr(0, comma)));
    if (!channel || *channel < 0 || *channel > 255) return std::nullopt;
    value.colour[i] = static_cast<std::uint8_t>(*channel);
    if (comma != std::string_view::npos) text.remove_prefix(comma + 1);
  }
  return value;
}

std::optional<Value> ReadRanged(const Parameter& parameter, std::optional<double> number) {
  if (!number || *number < parameter.valid.low || *number > parameter.valid.high) return std::nullopt;
  return Value{*number, {}};
}

std::optional<Value> Read(const Parameter& parameter, std::string_view text) {
  switch (parameter.kind) {
    case ParameterKind::Popup:
      return ReadPopup(parameter, text);
    case ParameterKind::Slider:
      return ReadRanged(parameter, ToInteger(text));
    case ParameterKind::Percent:
      if (!text.empty() && text.back() == '%') text = Trimmed(text.substr(0, text.size() - 1));
      [[fallthrough]];
    case ParameterKind::Fixed: {
      std::optional<Value> value = ReadRanged(parameter, ToNumber(text));
      if (value) value->number = ToFixedPoint(value->number);
      return value;
    }
    case ParameterKind::CheckBox:
      return ReadCheckBox(text);
    case ParameterKind::Colour:
      return ReadColour(text);
    default:
      return std::nullopt;
  }
}

}  // namespace

const char* KindName(ParameterKind kind) {
  switch (kind) {
    case ParameterKind::Popup:
      return "popup";
    case ParameterKind::Slider:
      return "slider";
    case ParameterKind::Fixed:
      return "fixed";
    case ParameterKind::Percent:
      return "percent";
    case ParameterKind::CheckBox:
      return "check box";
    case ParameterKind::Colour:
      return "colour";
    case ParameterKind::GroupStart:
      return "group start";
    case ParameterKind::GroupEnd:
      return "group end";
  }
  return "";
}

double ToFixedPoint(double number) {
  return std::trunc(number * 65536.0) / 65536.0;
}

Value ParseValue(const Parameter& parameter, std::string_view text) {
  const std::string_view trimmed = Trimmed(text);
  if (const std::optional<Value> value = Read(parameter, trimmed)) return *value;
  throw UsageError(RefusalOf(parameter, "\"" + std::string(trimmed) + "\""));
}

std::string RefusalOf(const Parameter& parameter, const std::string& written) {
  const char* verb = parameter.kind == ParameterKind::Popup ? "\" is one of " : "\" takes ";
  return "\"" + parameter.Path() + verb + DescribeDomain(parameter) + ", not " + written;
}

std::string FormatValue(const Parameter& parameter, const Value& value) {
  switch (parameter.kind) {
    case ParameterKind::Popup:
      return parameter.choices.at(static_cast<std::size_t>(value.number) - 1);
    case ParameterKind::Slider:
    case ParameterKind::Fixed:
    case ParameterKind::Percent:
      return ShortestFixed(value.number);
    case ParameterKind::CheckBox:
      return value.number != 0 ? "on" : "off";
    case ParameterKind::Colour:
      return FormatColour(value.colour);
    default:
      return "";
  }
}

std::string DescribeDomain(const Parameter& parameter) {
  const auto range = [&] { return ShortestFixed(parameter.valid.low) + " to " + ShortestFixed(parameter.valid.high); };
  switch (parameter.kind) {
    case ParameterKind::Popup:
      return Joined(parameter.choices);
    case ParameterKind::Slider:
      return "a whole number from " + range();
    case ParameterKind::Fixed:
      return "a number from " + range();
    case ParameterKind::Percent:
      return "a percent from " + range();
    case ParameterKind::CheckBox:
      return "on or off";
    case ParameterKind::Colour:
      return "a colour as #rrggbb or r,g,b";
    default:
      return "";
  }
}

}  // namespace quentara::cli
