#include "cli/program.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

namespace quentara {

std::string ReadText(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

Program::Program(Arguments arguments) {
  arguments.insert(arguments.begin(), QUENTARA_PROGRAM);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, (folder_ / "out").c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, (folder_ / "err").c_str(), O_WRONLY | O_CREAT, 0600);
  EXPECT_EQ(0, posix_spawn(&process_, QUENTARA_PROGRAM, &actions, nullptr, pointers.data(), environ));
  posix_spawn_file_actions_destroy(&actions);
}

Program::~Program() {
  if (process_ == 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

void Program::AwaitMessage(const std::string& text) const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (ReadText(folder_ / "err").find(text) == std::string::npos && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

void Program::Send(int signal) const {
  kill(process_, signal);
}

Outcome Program::Wait() {
  int status = 0;
  waitpid(process_, &status, 0);
  process_ = 0;
  return {WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status), ReadText(folder_ / "out"),
          ReadText(folder_ / "err")};
}

Outcome Succeed(const Arguments& arguments) {
  Outcome outcome = Program(arguments).Wait();
  EXPECT_EQ(0, outcome.status) << outcome.err;
  return outcome;
}

void ExpectFailure(int status, const Arguments& arguments, const std::string& pattern) {
  SCOPED_TRACE(testing::PrintToString(arguments));
  const Outcome outcome = Program(arguments).Wait();
  EXPECT_EQ(status, outcome.status);
  EXPECT_EQ("", outcome.out);
  EXPECT_THAT(outcome.err, testing::ContainsRegex(pattern));
  EXPECT_THAT(outcome.err, testing::MatchesRegex("quentara: [^\n]*\n"));
}

}  // namespace quentara
