#include "parameters/parameter_table.h"

#include <algorithm>

#include "errors.h"
#include "parameters/text.h"

namespace quentara::cli {
namespace {

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

}  // namespace

const Parameter& ParameterTable::Find(std::string_view text) const {
  const std::string_view name = Trimmed(text);
  if (!name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos) {
    const auto id = ToInteger(name);
    for (const Parameter& row : rows_)
      if (row.HasValue() && id && row.id == *id) return row;
    throw UsageError("no parameter has the identifier " + std::string(name) + "; \"quentara params\" lists them");
  }

  if (const std::size_t slash = name.find('/'); slash != std::string_view::npos) {
    const std::string_view group = Trimmed(name.substr(0, slash));
    const std::string_view ownName = Trimmed(name.substr(slash + 1));
    for (const Parameter& row : rows_)
      if (row.HasValue() && SameText(row.group, group) && SameText(row.name, ownName)) return row;
    FailUnknown(name);
  }

  std::vector<const Parameter*> candidates;
  for (const Parameter& row : rows_)
    if (row.HasValue() && SameText(row.name, name)) candidates.push_back(&row);
  if (candidates.empty()) FailUnknown(name);
  if (candidates.size() == 1) return *candidates.front();

  std::vector<const Parameter*> preferred;
  for (const Parameter* row : candidates)
    if (row->group.empty() || SameText(row->group, row->name)) preferred.push_back(row);
  if (preferred.size() == 1) return *preferred.front();

  std::vector<std::string> described;
  described.reserve(candidates.size());
  for (const Parameter* row : candidates)
    described.push_back(Quoted(row->Path()) + " (" + std::to_string(row->id) + ")");
  throw UsageError(Quoted(name) + " could be " + Joined(described, " or ") + "; give its group or its number");
}

void ParameterTable::FailUnknown(std::string_view name) const {
  std::vector<std::string> paths;
  for (const Parameter& row : rows_)
    if (row.HasValue()) paths.push_back(row.Path());
  if (name.find('/') == std::string_view::npos)
    for (const Parameter& row : rows_)
      if (row.HasValue()) paths.push_back(row.name);

  std::vector<std::string> nearest = NearestTexts(name, paths);
  for (std::string& path : nearest) path = Quoted(path);
  if (nearest.empty()) throw UsageError("there is no parameter " + Quoted(name) + "; \"quentara params\" lists them");
  throw UsageError("there is no parameter " + Quoted(name) + "; did you mean " + Joined(nearest, " or ") + "?");
}

ParameterValues ParameterTable::Defaults() const {
  ParameterValues values;
  for (const Parameter& row : rows_) values.push_back(row.standard);
  return values;
}

void ParameterTable::Assign(std::string_view assignment, ParameterValues& values) const {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos)
    throw UsageError(Quoted(assignment) + " sets nothing; write \"GROUP/NAME=VALUE\"");
  const Parameter& row = Find(assignment.substr(0, equals));
  values.at(static_cast<std::size_t>(row.index) - 1) = ParseValue(row, assignment.substr(equals + 1));
}

}  // namespace quentara::cli
