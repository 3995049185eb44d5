#include "presets/shipped_presets.h"

#include <algorithm>
#include <filesystem>

#include "errors.h"
#include "parameters/text.h"
#include "program_folder.h"

namespace quentara::cli {

namespace fs = std::filesystem;

std::vector<ShippedPreset> ListShippedPresets() {
  const fs::path folder = ProgramFolder().parent_path() / "share" / "quentara" / "presets";
  std::error_code error;
  std::vector<ShippedPreset> presets;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (entry.path().extension() == ".json") presets.push_back({entry.path().stem().string(), entry.path().string()});
  if (error) throw UsageError("the presets that come with the program are not at " + folder.string());
  std::sort(presets.begin(), presets.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return presets;
}

std::string PresetFile(const std::string& nameOrPath) {
  if (nameOrPath.find('/') != std::string::npos || fs::path(nameOrPath).extension() == ".json") return nameOrPath;
  std::vector<std::string> names;
  for (const ShippedPreset& preset : ListShippedPresets()) {
    if (SameText(preset.name, nameOrPath)) return preset.path;
    names.push_back(preset.name);
  }
  const std::vector<std::string> nearest = NearestTexts(nameOrPath, names);
  throw UsageError("there is no preset \"" + nameOrPath + "\"; " +
                   (nearest.empty() ? "\"quentara presets\" lists them; a file's name ends in .json"
                                    : "did you mean " + Joined(nearest, " or ") + "?"));
}

}  // namespace quentara::cli
