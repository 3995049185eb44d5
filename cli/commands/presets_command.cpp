#include <cstdio>

#include "commands/commands.h"
#include "presets/preset.h"
#include "presets/shipped_presets.h"

namespace quentara::cli {

void AddPresetsCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("presets", "List the presets that come with the program");
  command->footer("Example: quentara render clip.mp4 -o painted.mp4 --preset comic-book");
  command->callback([] {
    for (const ShippedPreset& preset : ListShippedPresets())
      std::printf("%-18s %s\n", preset.name.c_str(), Preset(preset.path).Description().c_str());
  });
}

}  // namespace quentara::cli
