/// Runs the real program.
#pragma once

#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "cli/media_support.h"
#include "support/temporary_folder.h"

namespace quentara {

struct Outcome {
  int status;  ///< the exit status, or minus the signal that ended the program
  std::string out;
  std::string err;
};

/// `quentara`, started in a folder with arguments as one types them in a shell.
class Program {
 public:
  Program(const TemporaryFolder& folder, const std::string& arguments) {
    const std::string command = "cd '" + folder.path().string() + "' && exec '" QUENTARA_PROGRAM "' " + arguments +
                                " </dev/null >" + (reports_ / "out") + " 2>" + (reports_ / "err");
    const char* shell[] = {"sh", "-c", command.c_str(), nullptr};
    EXPECT_EQ(0, posix_spawnp(&process_, "sh", nullptr, nullptr, const_cast<char**>(shell), environ));
  }
  ~Program() {
    if (process_ == 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Waits, a minute at most, until standard error holds the text.
  void AwaitMessage(const std::string& text) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (media::ReadFile(reports_ / "err").find(text) == std::string::npos && std::chrono::steady_clock::now() < end)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  void Send(int signal) const { kill(process_, signal); }

  Outcome Wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = 0;
    return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), media::ReadFile(reports_ / "out"),
            media::ReadFile(reports_ / "err")};
  }

 private:
  TemporaryFolder reports_;
  pid_t process_ = 0;
};

/// A test that runs the program in a folder of its own.
struct ProgramTest : testing::Test {
  const TemporaryFolder folder;

  /// Runs the program, which must succeed.
  Outcome Succeed(const std::string& arguments) const {
    Outcome outcome = Program(folder, arguments).Wait();
    EXPECT_EQ(0, outcome.status) << arguments << "\n" << outcome.err;
    return outcome;
  }

  /// Runs the program, which must end with this status and say nothing but one line that the regular expression is
  /// found in.
  void ExpectFailure(int status, const std::string& arguments, const std::string& pattern) const {
    SCOPED_TRACE(arguments);
    const Outcome outcome = Program(folder, arguments).Wait();
    EXPECT_EQ(status, outcome.status);
    EXPECT_EQ("", outcome.out);
    EXPECT_THAT(outcome.err, testing::ContainsRegex(pattern));
    EXPECT_THAT(outcome.err, testing::MatchesRegex("quentara: [^\n]*\n"));
  }
};

}  // namespace quentara
