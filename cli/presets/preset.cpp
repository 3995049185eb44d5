#include "presets/preset.h"

#include <filesystem>
#include <utility>

#include "errors.h"
#include "media/errors.h"
#include "media/temporary_file.h"
#include "presets/json_value.h"
#include "presets/parameter_object.h"

namespace quentara::cli {
namespace {

constexpr const char *kDescription = "description", *kVersion = "effect version", *kParameters = "parameters";

std::string TextIn(const Json& json, const char* key) {
  if (!json.contains(key)) return {};
  if (!json[key].is_string()) throw UsageError("\"" + std::string(key) + "\" must be a text");
  return json[key].get<std::string>();
}

void CheckKeys(const Json& json) {
  for (const auto& [key, value] : json.items())
    if (key != kDescription && key != kVersion && key != kParameters)
      throw UsageError("a preset has no " + Json(key).dump() + ", only \"description\", \"effect version\" and " +
                       "\"parameters\"");
  if (!json.contains(kParameters) || !json[kParameters].is_object())
    throw UsageError("a preset has an object \"parameters\"");
}

/// Whether a row is found by its path; on a host without groups several have the same.
bool HasOwnPath(const ParameterTable& table, const Parameter& row) try {
  return &table.Find(row.Path()) == &row;
} catch (const UsageError&) {
  return false;
}

}  // namespace

Preset::Preset(const std::string& path) : path_(path), parameters_(ReadJsonFile(path)) {
  try {
    CheckKeys(parameters_);
    TextIn(parameters_, kVersion);
    description_ = TextIn(parameters_, kDescription);
    parameters_ = Json(parameters_[kParameters]);
  } catch (const UsageError& error) {
    throw UsageError(path + ": " + error.what());
  }
}

void Preset::ApplyTo(ParameterValues& values, const ParameterTable& table) const try {
  ParameterValues changed = values;
  ForEachParameter(parameters_, table, [&](const Parameter& row, const Json& json) {
    changed.at(static_cast<std::size_t>(row.index) - 1) = FromJson(row, json);
  });
  values = std::move(changed);
} catch (const UsageError& error) {
  throw UsageError(path_ + ": " + error.what());
}

std::string PresetText(const ParameterTable& table, const ParameterValues& values, const std::string& effectVersion) {
  Json parameters = Json::object();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Parameter& row = table.Rows()[i];
    if (!row.HasValue() || values[i] == row.standard) continue;
    if (!HasOwnPath(table, row))
      parameters[std::to_string(row.id)] = ToJson(row, values[i]);
    else
      (row.group.empty() ? parameters : parameters[row.group])[row.name] = ToJson(row, values[i]);
  }
  return Json{{kDescription, ""}, {kVersion, effectVersion}, {kParameters, parameters}}.dump(2) + "\n";
}

void SavePreset(const std::string& path, const std::string& text, bool overwrite) {
  if (std::filesystem::path(path).extension() != ".json")
    throw UsageError(path + ": the name of a preset's file ends in .json");
  if (!overwrite && std::filesystem::exists(path)) throw media::OutputError(path + ": exists already");
  media::TemporaryFile file(path);
  file.Fill({text.begin(), text.end()});
  file.Commit(overwrite);
}

}  // namespace quentara::cli
