#include "presets/parameter_object.h"

#include <set>

#include "errors.h"

namespace quentara::cli {

void ForEachParameter(const Json& object, const ParameterTable& table,
                      const std::function<void(const Parameter&, const Json&)>& visit) {
  std::set<int> seen;
  const auto visitOnce = [&](const std::string& name, const Json& json) {
    const Parameter& row = table.Find(name);
    if (!seen.insert(row.index).second) throw UsageError("has \"" + row.Path() + "\" twice");
    visit(row, json);
  };
  for (const auto& [name, json] : object.items()) {
    if (!json.is_object()) visitOnce(name, json);
    if (json.is_object())
      for (const auto& [ownName, own] : json.items()) visitOnce(name + "/" + ownName, own);
  }
}

}  // namespace quentara::cli
