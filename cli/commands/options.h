/// Options that several commands share, and what they make.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "host/effect.h"
#include "progress.h"

namespace quentara::cli {

/// Heading of the options for parameters in a command's help.
constexpr const char* kParameters = "Parameters";

/// Which effect, on which host, with which parameters.
struct EffectOptions {
  std::string effectPath;
  std::string hostVersion;
  std::vector<std::string> presets;
  std::vector<std::string> assignments;

  void AddTo(CLI::App& command);

  /// Loads the effect. @throws UsageError, EffectError
  std::unique_ptr<Effect> LoadEffect() const;

  /// The effect's defaults with all --preset and then all --set carried out in turn. @throws UsageError
  ParameterValues Values(const ParameterTable& table) const;
};

/// Keeping the parameters as a preset.
struct PresetSaving {
  std::string path;

  void AddTo(CLI::App& command);

  /// Writes the preset if one is asked for. @throws media::OutputError
  void Save(const Effect& effect, const ParameterValues& values, bool overwrite) const;
};

/// How a command that renders goes about it.
struct RunOptions {
  int threads;  ///< all processors if not set
  bool overwrite = false;
  bool quiet = false;

  RunOptions();
  void AddTo(CLI::App& command);
};

/// Lets Ctrl-C stop the effect, and the report show its progress and its notes.
Watch WatchWith(ProgressReport& progress);

/// "N/D" with 0 < N <= D <= 1000. @throws UsageError that names the option.
Downsampling ParseDownsampling(const std::string& option, const std::string& text);

}  // namespace quentara::cli
