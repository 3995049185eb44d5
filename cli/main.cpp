/// `quentara`, the command-line host of the effect.
#include <malloc.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "errors.h"
#include "host/effect.h"
#include "interruption.h"
#include "media/errors.h"
#include "parameters/text.h"

namespace quentara::cli {
namespace {

// Frames ask for planes of the same sizes again and again: what they free stays with the process, as clearing fresh
// pages from the system would cost a tenth of a frame.
void KeepFreedMemory() {
  mallopt(M_MMAP_THRESHOLD, INT_MAX);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
}

int Fail(int status, const char* message) {
  std::fprintf(stderr, "quentara: %s\n", message);
  return status;
}

/// The program's version and, where one is found, what the effect says about itself.
void PrintVersion() {
  std::puts("quentara " QUENTARA_VERSION);
  try {
    std::puts(Effect(DefaultEffectPath(), {}).About().c_str());
  } catch (const EffectError&) {
  }
  throw CLI::Success();
}

/// @throws UsageError when the first word is no command.
void CheckCommand(const CLI::App& program, int argc, char** argv) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands({})) names.push_back(command->get_name());
  const std::string word = argc > 1 ? argv[1] : "";
  if (word.empty()) throw UsageError("say what to do: " + Joined(names, " or ") + "; \"quentara --help\" tells more");
  if (word.front() == '-' || std::find(names.begin(), names.end(), word) != names.end()) return;
  throw UsageError("there is no command \"" + word + "\", but there are: " + Joined(names));
}

/// Makes the help speak of commands, as its own texts do.
void SetWords(CLI::FormatterBase& help) {
  help.column_width(34);
  help.label("SUBCOMMAND", "COMMAND");
  help.label("Positionals", "Input");
  help.label("REQUIRED", "(required)");
  help.label("Excludes", "not with");
}

int Run(int argc, char** argv) {
  CLI::App program("Turns footage into drawn and painted pictures.", "quentara");
  program.add_flag_callback("--version", PrintVersion, "Print the versions of the program and the effect and exit");
  program.set_help_flag("-h,--help", "Print this help and exit");
  program.require_subcommand(1);
  SetWords(*program.get_formatter());
  AddRenderCommand(program);
  AddSheetCommand(program);
  AddPresetsCommand(program);
  AddParamsCommand(program);
  for (CLI::App* command : program.get_subcommands({})) command->group("Commands");
  program.footer(
      "\"quentara COMMAND --help\" tells more. Exit status: 0 done, 2 usage, 3 input, 4 output, 5 the effect "
      "failed,\n128 + signal when interrupted.");
  CheckCommand(program, argc, argv);
  try {
    program.parse(argc, argv);
    return kSuccess;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error);
    return Fail(kUsage, error.what());
  }
}

int RunCatching(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const Cancelled&) {
    Fail(0, "interrupted; nothing unfinished is left behind");
    return 128 + InterruptingSignal();
  } catch (const UsageError& error) {
    return Fail(kUsage, error.what());
  } catch (const media::InputError& error) {
    return Fail(kInput, error.what());
  } catch (const media::OutputError& error) {
    return Fail(kOutput, error.what());
  } catch (const std::bad_alloc&) {
    return Fail(kEffect, "out of memory");
  } catch (const std::exception& error) {
    return Fail(kEffect, error.what());
  }
}

}  // namespace
}  // namespace quentara::cli

int main(int argc, char** argv) {
  quentara::cli::KeepFreedMemory();
  quentara::cli::WatchForInterruption();
  return quentara::cli::RunCatching(argc, argv);
}
