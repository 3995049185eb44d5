/// Files that appear only when they are complete.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quentara::media {

/// A file under a name of its own beside the file that it is to become. Destroyed without Commit, it is removed.
class TemporaryFile {
 public:
  /// Makes an empty file in the folder of `target`.
  /// @throws OutputError if that cannot be done.
  explicit TemporaryFile(std::string target);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& Path() const { return path_; }
  const std::string& Target() const { return target_; }

  /// Writes the whole content.
  /// @throws OutputError
  void Fill(const std::vector<std::uint8_t>& content);

  /// Gives the file its name.
  /// @param overwrite  replace a file that has the name; else such a file stays and OutputError is thrown.
  void Commit(bool overwrite);

 private:
  std::string target_;
  std::string path_;
};

}  // namespace quentara::media
