#include "commands/options.h"

#include <algorithm>
#include <optional>
#include <thread>
#include <utility>

#include "errors.h"
#include "interruption.h"
#include "parameters/text.h"
#include "presets/preset.h"
#include "presets/shipped_presets.h"

namespace quentara::cli {
namespace {

std::optional<std::pair<int, int>> SplitIntegers(const std::string& text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string::npos) return std::nullopt;
  const std::optional<int> first = ToInteger(text.substr(0, at));
  const std::optional<int> second = ToInteger(text.substr(at + 1));
  if (!first || !second) return std::nullopt;
  return std::pair(*first, *second);
}

}  // namespace

void EffectOptions::AddTo(CLI::App& command) {
  command
      .add_option(
          "--preset", presets,
          "Set the parameters of a preset, before any --set: a\nfile, or a name that \"quentara presets\" lists. "
          "May be\nrepeated")
      ->type_name("FILE.json|NAME")
      ->allow_extra_args(false)
      ->group(kParameters);
  command
      .add_option(
          "--set", assignments,
          "Set a parameter: \"Flat Shaded/Flatness=14\", or by its\nnumber 7=14; \"quentara params\" lists them. "
          "May be repeated")
      ->type_name("\"GROUP/NAME=VALUE\"")
      ->allow_extra_args(false)
      ->group(kParameters);
  command.add_option("--effect", effectPath, "The effect's library [beside this program]")
      ->type_name("FILE")
      ->group("Effect");
  command
      .add_option("--host-version", hostVersion,
                  "Stand in for a host of this interface version [13.27];\nbelow 12.12 there are no groups")
      ->type_name("MAJOR.MINOR")
      ->group("Effect");
}

std::unique_ptr<Effect> EffectOptions::LoadEffect() const {
  HostIdentity identity;
  if (!hostVersion.empty()) {
    const auto version = SplitIntegers(hostVersion, '.');
    const auto inRange = [](int number) { return number >= 0 && number <= 999; };
    if (!version || !inRange(version->first) || !inRange(version->second))
      throw UsageError("--host-version takes a version such as 12.11, not \"" + hostVersion + "\"");
    identity.version = {static_cast<A_short>(version->first), static_cast<A_short>(version->second)};
  }
  return std::make_unique<Effect>(effectPath.empty() ? DefaultEffectPath() : effectPath, identity);
}

ParameterValues EffectOptions::Values(const ParameterTable& table) const {
  ParameterValues values = table.Defaults();
  for (const std::string& preset : presets) Preset(PresetFile(preset)).ApplyTo(values, table);
  for (const std::string& assignment : assignments) table.Assign(assignment, values);
  return values;
}

void PresetSaving::AddTo(CLI::App& command) {
  command.add_option("--save-preset", path, "Keep the parameters that differ from their defaults\nas a preset")
      ->type_name("FILE.json")
      ->group(kParameters);
}

void PresetSaving::Save(const Effect& effect, const ParameterValues& values, bool overwrite) const {
  if (path.empty()) return;
  SavePreset(path, PresetText(effect.Parameters(), values, effect.Version()), overwrite);
}

RunOptions::RunOptions() : threads(static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 256u))) {}

void RunOptions::AddTo(CLI::App& command) {
  command.add_flag("-y,--overwrite", overwrite, "Replace an output that exists");
  command.add_option("--threads", threads, "Workers in all, 1 to 256 [all processors]")
      ->type_name("N")
      ->check(CLI::Range(1, 256).description(""));
  command.add_flag("-q,--quiet", quiet, "Show no progress");
}

Watch WatchWith(ProgressReport& progress) {
  return {[] { return InterruptingSignal() != 0; }, [&](int done, int total) { progress.Within(done, total); },
          [&](const std::string& text) { progress.Note(text); }};
}

Downsampling ParseDownsampling(const std::string& option, const std::string& text) {
  const auto fraction = SplitIntegers(text, '/');
  if (!fraction || fraction->first < 1 || fraction->second < fraction->first || fraction->second > 1000)
    throw UsageError(option + " takes a fraction of the full size such as 1/2, not \"" + text + "\"");
  return {fraction->first, fraction->second};
}

}  // namespace quentara::cli
