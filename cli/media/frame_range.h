/// Which frames of a sequence or a video are asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quentara::media {

/// A set of frame numbers, walked in rising order.
class FrameRange {
 public:
  /// The numbers first, first + step, ... up to `last`; 0 <= first <= last, step >= 1.
  struct Span {
    std::int64_t first;
    std::int64_t last;
    std::int64_t step;
  };

  explicit FrameRange(std::vector<Span> spans);

  bool Contains(std::int64_t number) const;
  /// The smallest number of the set that is not below `number`, if there is one.
  std::optional<std::int64_t> From(std::int64_t number) const;
  std::int64_t First() const;
  std::int64_t Last() const;
  std::int64_t Count() const;
  /// Whether the set has no holes.
  bool IsContiguous() const { return Count() == Last() - First() + 1; }

 private:
  std::vector<Span> spans_;
};

/// Reads "1-100", "1-100x2" (every second one) or a list of such as "1,5,20-30"; spans may overlap and come in any
/// order.
/// @throws std::invalid_argument with a one-line message for any other text.
FrameRange ParseFrameRange(const std::string& text);

/// Numbers as a reader likes them: "3, 7-9, 12". After `most` pieces the rest is counted: "3, 7-9 and 41 more".
/// @param numbers  rising.
std::string DescribeNumbers(const std::vector<std::int64_t>& numbers, int most = 8);

}  // namespace quentara::media
