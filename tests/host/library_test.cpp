// The library as a host loads it.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "support/loaded_library.h"
#include "support/temporary_folder.h"

namespace quentara {
namespace {

constexpr int kHeight = 40, kWidth = 30;

FakeWorld Painted(FakeHost::Entry entry, HostWorkers workers, const FakeWorld& input) {
  std::mt19937 rng(2);
  FakeHost host(workers);
  host.entry = entry;
  EXPECT_EQ(PF_Err_NONE, host.DefineParams());
  for (const int radius : {2, 7}) host.Param(radius).u.sd.value = 1;  // leaves a band for each worker
  FakeWorld output(kHeight, kWidth, false, 0, rng);
  EXPECT_EQ(PF_Err_NONE, host.Render(input, output)) << host.out.return_msg;
  return output;
}

TEST(Library, PaintsInTwoThreadsAtOnceWhatTheCodeInsideItPaints) {
  std::mt19937 rng(1);
  const FakeWorld input(kHeight, kWidth, false, 0, rng);
  const FakeWorld expected = Painted(FakeHost().entry, HostWorkers::Serial, input);
  const LoadedLibrary library(QUENTARA_EFFECT);
  const auto paintOften = [&](HostWorkers workers) {
    for (int i = 0; i < 10; ++i) ASSERT_EQ(expected.memory, Painted(library.entry(), workers, input).memory);
  };
  std::thread other(paintOften, HostWorkers::Threads);
  paintOften(HostWorkers::None);
  other.join();
}

TEST(Library, LoadsFromAPathWithBlanksAndLettersOfAnyKind) {
  const TemporaryFolder temporary;
  const std::filesystem::path folder = temporary.path() / u8"Quentara \u00e6\u6f22 effect";
  std::filesystem::create_directory(folder);
  const std::filesystem::path copy = folder / u8"na\u00efve name.aex";
  std::filesystem::copy_file(QUENTARA_EFFECT, copy);
  const LoadedLibrary library(copy);
  FakeHost host;
  host.entry = library.entry();
  EXPECT_EQ(PF_Err_NONE, host.Send(PF_Cmd_GLOBAL_SETUP));
  EXPECT_NE(0u, host.out.my_version);
}

TEST(Library, LeavesNothingBehindWhenItIsUnloaded) {
  std::mt19937 rng(3);
  const FakeWorld input(kHeight, kWidth, false, 0, rng);
  const auto use = [&] {
    const LoadedLibrary library(QUENTARA_EFFECT);
    Painted(library.entry(), HostWorkers::None, input);
  };
  for (int i = 0; i < 10; ++i) use();
  const ProcessUse before = UseOfProcess();
  for (int i = 0; i < 100; ++i) use();
  const ProcessUse after = UseOfProcess();
  EXPECT_EQ(before.handles, after.handles);
  // The heap keeps a little for each thread, whenever that has run: far less than a loss at every load.
  EXPECT_NEAR(static_cast<double>(before.bytes), static_cast<double>(after.bytes), 100 * 100);
  // A process has about a thousand slots for values of each thread's own; a lost one at each load uses them up.
  for (int i = 0; i < 1200; ++i) LoadedLibrary again(QUENTARA_EFFECT);
}

}  // namespace
}  // namespace quentara
