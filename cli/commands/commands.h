/// The commands of the program. Each adds itself to the command line; its action throws what ends it early.
#pragma once

#include <CLI/CLI.hpp>

namespace quentara::cli {

/// `render`: footage in, rendered footage out.
void AddRenderCommand(CLI::App& program);

/// `sheet`: a contact sheet of what the effect makes of a frame.
void AddSheetCommand(CLI::App& program);

/// `presets`: the presets that come with the program.
void AddPresetsCommand(CLI::App& program);

/// `params`: the effect's parameters and their values.
void AddParamsCommand(CLI::App& program);

}  // namespace quentara::cli
