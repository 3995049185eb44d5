/// Runs the real program.
#pragma once

#include <sys/types.h>

#include <string>

#include "support/temporary_folder.h"

namespace quentara {

std::string ReadText(const std::string& path);

struct Outcome {
  int status;  ///< the exit status, or minus the signal that ended the program
  std::string out;
  std::string err;
};

/// `quentara`, started in a folder with arguments as one types them in a shell.
class Program {
 public:
  Program(const TemporaryFolder& folder, const std::string& arguments);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Waits, a minute at most, until standard error holds the text.
  void AwaitMessage(const std::string& text) const;
  void Send(int signal) const;
  Outcome Wait();

 private:
  TemporaryFolder reports_;
  pid_t process_ = 0;
};

/// Runs the program, which must succeed.
Outcome Succeed(const TemporaryFolder& folder, const std::string& arguments);

/// Runs the program, which must end with this status and say nothing but one line that the regular expression is found
/// in.
void ExpectFailure(int status, const TemporaryFolder& folder, const std::string& arguments, const std::string& pattern);

}  // namespace quentara
