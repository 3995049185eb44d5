#include "media/sequence_pattern.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>

namespace quentara::media {

std::optional<SequencePattern> SequencePattern::Parse(const std::string& path) {
  const std::size_t nameStart = path.find_last_of('/') + 1;  // npos + 1 is 0
  static const std::regex kPlace(R"(%(?:0(\d{1,2}))?d|\[(#+)\]|(#+))");
  std::smatch last;
  for (std::sregex_iterator match(path.begin() + nameStart, path.end(), kPlace), end; match != end; ++match)
    last = *match;
  if (last.empty()) return std::nullopt;
  const std::size_t digits = last[1].matched ? std::stoul(last[1].str()) : last[2].length() + last[3].length();
  return SequencePattern(std::string(path.begin(), last[0].first), std::string(last[0].second, path.end()),
                         std::max<std::size_t>(digits, 1));
}

std::string SequencePattern::Name(std::int64_t number) const {
  const std::string text = std::to_string(number);
  return before_ + std::string(digits_ - std::min(digits_, text.size()), '0') + text + after_;
}

std::vector<std::int64_t> SequencePattern::NumbersInFolder() const {
  const std::size_t nameStart = before_.find_last_of('/') + 1;
  const std::string folder = nameStart == 0 ? "." : before_.substr(0, nameStart);
  const std::string start = before_.substr(nameStart);
  std::vector<std::int64_t> numbers;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.size() <= start.size() + after_.size() || name.compare(0, start.size(), start) != 0 ||
        name.compare(name.size() - after_.size(), after_.size(), after_) != 0)
      continue;
    const std::string digits = name.substr(start.size(), name.size() - start.size() - after_.size());
    constexpr std::size_t kMostDigits = 18;
    if (digits.size() > kMostDigits ||
        !std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isdigit(c) != 0; }))
      continue;
    const std::int64_t number = std::stoll(digits);
    if (Name(number) == before_ + digits + after_) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace quentara::media
