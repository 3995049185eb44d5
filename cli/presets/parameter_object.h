/// JSON objects with something for each of several parameters.
#pragma once

#include <functional>

#include "parameters/parameter_table.h"
#include "presets/json_file.h"

namespace quentara::cli {

/// Calls `visit` for every member in turn, with the parameter that its key names as ParameterTable::Find takes names. A
/// member that is an object is a group, its own members being the group's parameters.
/// @throws UsageError for an unknown parameter and for one that is named twice.
void ForEachParameter(const Json& object, const ParameterTable& table,
                      const std::function<void(const Parameter&, const Json&)>& visit);

}  // namespace quentara::cli
