/// Values of parameters as JSON: numbers for sliders, fixed numbers and percents, true or false for check boxes, texts
/// for popups and colours.
#pragma once

#include "parameters/parameter.h"
#include "presets/json_file.h"

namespace quentara::cli {

/// A whole number without a decimal point.
Json JsonNumber(double number);

/// null for a row without a value.
Json ToJson(const Parameter& parameter, const Value& value);

/// What ToJson makes of a value, and any text that ParseValue reads for a popup, a check box or a colour.
/// @throws UsageError that names the parameter and says what it takes.
Value FromJson(const Parameter& parameter, const Json& json);

}  // namespace quentara::cli
