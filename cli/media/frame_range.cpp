#include "media/frame_range.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

namespace quentara::media {
namespace {

/// Takes a number off the front of `text`.
std::int64_t TakeNumber(std::string_view& text, const std::string& whole) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // Nine digits are far beyond any clip and keep all sums of frame numbers small.
  if (error != std::errc() || text.front() == '-' || value > 999'999'999)
    throw std::invalid_argument("frames '" + whole + "': write them as 1-100, 1-100x2 or 1,5,20-30");
  text.remove_prefix(end - text.data());
  return value;
}

bool TakeCharacter(std::string_view& text, char character) {
  if (text.empty() || text.front() != character) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

FrameRange::FrameRange(std::vector<Span> spans) : spans_(std::move(spans)) {
  for (Span& span : spans_) span.last -= (span.last - span.first) % span.step;
}

bool FrameRange::Contains(std::int64_t number) const {
  return std::any_of(spans_.begin(), spans_.end(), [&](const Span& span) {
    return number >= span.first && number <= span.last && (number - span.first) % span.step == 0;
  });
}

std::optional<std::int64_t> FrameRange::From(std::int64_t number) const {
  std::optional<std::int64_t> best;
  for (const Span& span : spans_) {
    if (number > span.last) continue;
    const std::int64_t steps = number <= span.first ? 0 : (number - span.first + span.step - 1) / span.step;
    const std::int64_t next = span.first + steps * span.step;
    best = best ? std::min(*best, next) : next;
  }
  return best;
}

std::int64_t FrameRange::First() const {
  return *From(0);
}

std::int64_t FrameRange::Last() const {
  return std::max_element(spans_.begin(), spans_.end(), [](const Span& a, const Span& b) { return a.last < b.last; })
      ->last;
}

std::int64_t FrameRange::Count() const {
  if (spans_.size() == 1) return (spans_[0].last - spans_[0].first) / spans_[0].step + 1;
  std::int64_t count = 0;
  for (auto number = From(0); number; number = From(*number + 1)) ++count;
  return count;
}

FrameRange ParseFrameRange(const std::string& text) {
  std::vector<FrameRange::Span> spans;
  std::string_view rest = text;
  do {
    FrameRange::Span span{TakeNumber(rest, text), 0, 1};
    span.last = TakeCharacter(rest, '-') ? TakeNumber(rest, text) : span.first;
    if (TakeCharacter(rest, 'x')) span.step = TakeNumber(rest, text);
    if (span.last < span.first) throw std::invalid_argument("frames '" + text + "': a range ends before it starts");
    if (span.step < 1) throw std::invalid_argument("frames '" + text + "': the step must be at least 1");
    spans.push_back(span);
  } while (TakeCharacter(rest, ','));
  if (!rest.empty()) throw std::invalid_argument("frames '" + text + "': write them as 1-100, 1-100x2 or 1,5,20-30");
  return FrameRange(std::move(spans));
}

std::string DescribeNumbers(const std::vector<std::int64_t>& numbers, int most) {
  std::string text;
  for (std::size_t i = 0, pieces = 0; i < numbers.size(); ++pieces) {
    if (pieces == static_cast<std::size_t>(most)) return text + " and " + std::to_string(numbers.size() - i) + " more";
    std::size_t last = i;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    if (i > 0) text += ", ";
    text += std::to_string(numbers[i]);
    if (last > i) text += "-" + std::to_string(numbers[last]);
    i = last + 1;
  }
  return text;
}

}  // namespace quentara::media
