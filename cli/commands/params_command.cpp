#include <algorithm>
#include <cstdio>

#include "commands/commands.h"
#include "commands/options.h"
#include "presets/json_value.h"

namespace quentara::cli {
namespace {

struct ParamsOptions {
  EffectOptions effect;
  PresetSaving preset;
  bool overwrite = false;
  bool json = false;
};

std::string ShownValue(const Parameter& row, const Value& value) {
  return FormatValue(row, value) + (row.kind == ParameterKind::Percent ? "%" : "");
}

std::string ShownRange(const Parameter& row, const Interval& range) {
  return ShownValue(row, {range.low, {}}) + " to " + ShownValue(row, {range.high, {}});
}

std::string ShownDomain(const Parameter& row) {
  if (!row.IsRanged()) return row.kind == ParameterKind::Colour ? "#rrggbb" : DescribeDomain(row);
  const std::string valid = ShownRange(row, row.valid);
  const std::string slider = ShownRange(row, row.slider);
  return valid == slider ? valid : valid + " (slider " + slider + ")";
}

Json JsonRange(const Interval& range) {
  return {JsonNumber(range.low), JsonNumber(range.high)};
}

Json JsonRow(const Parameter& row, const Value& value, bool greyed) {
  Json json = {{"index", row.index}, {"id", row.id}};
  json["group"] = row.group.empty() ? Json() : Json(row.group);
  json["name"] = row.name;
  json["kind"] = KindName(row.kind);
  if (row.HasValue()) {
    json["value"] = ToJson(row, value);
    json["default"] = ToJson(row, row.standard);
  }
  if (row.IsRanged()) {
    json["valid"] = JsonRange(row.valid);
    json["slider"] = JsonRange(row.slider);
  }
  if (row.kind == ParameterKind::Popup) json["choices"] = row.choices;
  json["enabled"] = !greyed;
  return json;
}

void PrintJson(const std::vector<Parameter>& rows, const ParameterValues& values, const std::vector<bool>& greyed) {
  Json list = Json::array();
  for (std::size_t i = 0; i < rows.size(); ++i) list.push_back(JsonRow(rows[i], values[i], greyed[i]));
  std::puts(list.dump(2).c_str());
}

void PrintTable(const std::vector<Parameter>& rows, const ParameterValues& values, const std::vector<bool>& greyed) {
  std::puts("index   id  parameter                 value          default        takes");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Parameter& row = rows[i];
    if (row.kind == ParameterKind::GroupEnd) continue;
    const std::string name = (row.group.empty() ? "" : "  ") + row.name;
    if (row.kind == ParameterKind::GroupStart) {
      std::printf("%5d  %3d  %s%s\n", row.index, row.id, name.c_str(), greyed[i] ? "  (greyed)" : "");
      continue;
    }
    const char changed = values[i] != row.standard ? '*' : ' ';
    std::printf("%5d  %3d  %-24s %c%-14s %-14s %s%s\n", row.index, row.id, name.c_str(), changed,
                ShownValue(row, values[i]).c_str(), ShownValue(row, row.standard).c_str(), ShownDomain(row).c_str(),
                greyed[i] ? "  (greyed)" : "");
  }
}

void Run(const ParamsOptions& options) {
  const std::unique_ptr<Effect> effect = options.effect.LoadEffect();
  const ParameterValues values = options.effect.Values(effect->Parameters());
  options.preset.Save(*effect, values, options.overwrite);
  const std::vector<bool> greyed = effect->GreyedRows(values);
  (options.json ? PrintJson : PrintTable)(effect->Parameters().Rows(), values, greyed);
}

}  // namespace

void AddParamsCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("params", "List the effect's parameters, their values and what they take");
  command->footer(
      "A star marks a value that differs from the default. A greyed parameter changes nothing as things are set.");
  const auto options = std::make_shared<ParamsOptions>();
  options->effect.AddTo(*command);
  options->preset.AddTo(*command);
  command->add_flag("-y,--overwrite", options->overwrite, "Replace a preset that exists");
  command->add_flag("--json", options->json, "Print everything as JSON");
  command->callback([options] { Run(*options); });
}

}  // namespace quentara::cli
