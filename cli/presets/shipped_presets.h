/// The presets that come with the program: files NAME.json in ../share/quentara/presets, seen from its folder.
#pragma once

#include <string>
#include <vector>

namespace quentara::cli {

struct ShippedPreset {
  std::string name;
  std::string path;
};

/// In the order of their names. @throws UsageError when their folder is not there.
std::vector<ShippedPreset> ListShippedPresets();

/// The file of a preset: what has a slash or ends in ".json" is a path, anything else the name of a shipped preset, in
/// any case. @throws UsageError that gives the nearest names when there is none of that name.
std::string PresetFile(const std::string& nameOrPath);

}  // namespace quentara::cli
