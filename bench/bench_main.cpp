#include <benchmark/benchmark.h>
#include <malloc.h>

#include <climits>
#include <exception>
#include <iostream>
#include <optional>
#include <string_view>

#include "bench_cases.h"
#include "imageops/window_kernels_dispatch.h"

// Takes Google Benchmark's options and --kernels=NAME, an instruction set; or
// --write-planes=FOLDER to hand the planes to other programs.
int main(int argc, char** argv) {
  constexpr std::string_view kWrite = "--write-planes=";
  if (argc == 2 && std::string_view(argv[1]).substr(0, kWrite.size()) == kWrite) {
    try {
      quentara::WritePlanes(argv[1] + kWrite.size());
      return 0;
    } catch (const std::exception& failure) {
      std::cerr << "quentara_bench: cannot write the planes: " << failure.what() << '\n';
      return 1;
    }
  }
  // As the command-line host has it: freed planes stay with the process.
  mallopt(M_MMAP_THRESHOLD, INT_MAX);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  benchmark::Initialize(&argc, argv);
  std::optional<quentara::KernelScope> kernels;
  constexpr std::string_view kKernels = "--kernels=";
  if (argc == 2 && std::string_view(argv[1]).substr(0, kKernels.size()) == kKernels) {
    const std::string_view name = std::string_view(argv[1]).substr(kKernels.size());
    for (const quentara::WindowKernels* set : quentara::RunnableKernels())
      if (set->name == name) kernels.emplace(*set);
    if (!kernels) {
      std::cerr << "quentara_bench: this processor runs no kernels called '" << name << "'\n";
      return 2;
    }
    argc = 1;
  }
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
