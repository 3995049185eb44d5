#include "media/sequence_pattern.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace quentara::media {

namespace {

/// A place for a number in a name.
struct Place {
  std::size_t length;
  std::size_t digits;
};

std::size_t CountOf(char character, const std::string& text, std::size_t at) {
  return std::min(text.find_first_not_of(character, at), text.size()) - at;
}

/// The place that starts at `at`, if one does.
std::optional<Place> PlaceAt(const std::string& text, std::size_t at) {
  if (text[at] == '#') {
    const std::size_t count = CountOf('#', text, at);
    return Place{count, count};
  }
  if (text[at] == '[') {
    const std::size_t count = CountOf('#', text, at + 1);
    if (count > 0 && text[at + 1 + count] == ']') return Place{count + 2, count};
  }
  if (text[at] != '%') return std::nullopt;
  std::size_t end = at + 1, digits = 0;
  if (text[end] == '0')
    for (++end; std::isdigit(static_cast<unsigned char>(text[end])) && end < at + 4; ++end)
      digits = digits * 10 + (text[end] - '0');
  if (text[end] != 'd') return std::nullopt;
  return Place{end + 1 - at, std::max<std::size_t>(digits, 1)};
}

}  // namespace

std::optional<SequencePattern> SequencePattern::Parse(const std::string& path) {
  std::optional<SequencePattern> last;
  for (std::size_t at = path.find_last_of('/') + 1; at < path.size();) {  // npos + 1 is 0
    const std::optional<Place> place = PlaceAt(path, at);
    if (place) last = SequencePattern(path.substr(0, at), path.substr(at + place->length), place->digits);
    at += place ? place->length : 1;
  }
  return last;
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
