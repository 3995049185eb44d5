/// Names of numbered pictures.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quentara::media {

/// A path whose file name has a place for a number: `%d`, `%04d`, `####` or `[####]`. Of several such places the last
/// counts, and the others stay as they are.
class SequencePattern {
 public:
  /// None if the name has no place for a number.
  static std::optional<SequencePattern> Parse(const std::string& path);

  /// The path of one picture; its number has leading zeros up to the digits of the pattern, and more digits if it must.
  std::string Name(std::int64_t number) const;

  /// The numbers of the files in the folder that Name could have named, rising; none if there is no such folder.
  std::vector<std::int64_t> NumbersInFolder() const;

 private:
  SequencePattern(std::string before, std::string after, std::size_t digits)
      : before_(std::move(before)), after_(std::move(after)), digits_(digits) {}

  std::string before_;  // with the folder
  std::string after_;
  std::size_t digits_;
};

}  // namespace quentara::media
