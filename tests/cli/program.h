/// Runs the real program.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace quentara {

using Arguments = std::vector<std::string>;

inline Arguments operator+(Arguments a, const Arguments& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

std::string ReadText(const std::string& path);

struct Outcome {
  int status;  ///< the exit status, or minus the signal that ended the program
  std::string out;
  std::string err;
};

/// `quentara`, started with some arguments.
class Program {
 public:
  explicit Program(Arguments arguments);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Waits, a minute at most, until standard error holds the text.
  void AwaitMessage(const std::string& text) const;
  void Send(int signal) const;
  Outcome Wait();

 private:
  TemporaryFolder folder_;
  pid_t process_ = 0;
};

/// Runs the program, which must succeed.
Outcome Succeed(const Arguments& arguments);

/// Runs the program, which must end with this status and say nothing but one line that the regular expression is found
/// in.
void ExpectFailure(int status, const Arguments& arguments, const std::string& pattern);

}  // namespace quentara
