/// Presets: files that hold what a look needs beside the defaults.
///
///     {
///       "description": "Flat colours with bold black lines",
///       "effect version": "2.1.7",
///       "parameters": {
///         "Roto": "Gouache",
///         "Comic Outlines": {"Comic Outlines": true, "Strength": 75}
///       }
///     }
#pragma once

#include <string>

#include "parameters/parameter_table.h"
#include "presets/json_file.h"

namespace quentara::cli {

/// What a preset's file says, its parameters not yet compared with any effect's.
class Preset {
 public:
  /// @throws UsageError that names the file.
  explicit Preset(const std::string& path);

  const std::string& Description() const { return description_; }

  /// Sets the preset's parameters and leaves all others as they are.
  /// @throws UsageError that names the file and the parameter: one that the table lacks or has twice, or a value that
  /// it does not take.
  void ApplyTo(ParameterValues& values, const ParameterTable& table) const;

 private:
  std::string path_;
  std::string description_;
  Json parameters_;
};

/// The preset of everything in `values` that differs from the defaults.
std::string PresetText(const ParameterTable& table, const ParameterValues& values, const std::string& effectVersion);

/// Writes a file under a temporary name and renames it when it is complete.
/// @throws UsageError when its name does not end in ".json"; media::OutputError, also when the file exists and is not
/// to be replaced.
void SavePreset(const std::string& path, const std::string& text, bool overwrite);

}  // namespace quentara::cli
