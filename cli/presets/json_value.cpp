#include "presets/json_value.h"

#include <cmath>

#include "errors.h"
#include "parameters/text.h"

namespace quentara::cli {

Json JsonNumber(double number) {
  constexpr double kExactIntegers = 9007199254740992.0;
  if (number == std::trunc(number) && std::abs(number) < kExactIntegers) return static_cast<long long>(number);
  return number;
}

Json ToJson(const Parameter& parameter, const Value& value) {
  if (!parameter.HasValue()) return nullptr;
  if (parameter.kind == ParameterKind::CheckBox) return value.number != 0;
  if (parameter.IsRanged()) return JsonNumber(*ToNumber(FormatValue(parameter, value)));
  return FormatValue(parameter, value);
}

Value FromJson(const Parameter& parameter, const Json& json) {
  if (parameter.IsRanged()) {
    if (json.is_number()) return ParseValue(parameter, JsonNumber(json.get<double>()).dump());
  } else if (json.is_string()) {
    return ParseValue(parameter, json.get<std::string>());
  } else if (json.is_boolean() && parameter.kind == ParameterKind::CheckBox) {
    return Value{json.get<bool>() ? 1.0 : 0.0, {}};
  }
  throw UsageError(RefusalOf(parameter, json.dump()));
}

}  // namespace quentara::cli
