#include "parameters/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <utility>

namespace quentara::cli {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (Lower(a[i]) == Lower(b[j]) ? 0 : 1);
      diagonal = std::exchange(row[j + 1], std::min({replaced, row[j] + 1, row[j + 1] + 1}));
    }
  }
  return row.back();
}

template <typename Number>
std::optional<Number> ReadWhole(std::string_view text) {
  if (!text.empty() && text.front() == '+' && (text.size() == 1 || text[1] != '-')) text.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool SameText(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

std::optional<double> ToNumber(std::string_view text) {
  const std::optional<double> number = ReadWhole<double>(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<int> ToInteger(std::string_view text) {
  return ReadWhole<int>(text);
}

std::vector<std::string> NearestTexts(std::string_view text, const std::vector<std::string>& candidates,
                                      std::size_t most) {
  const std::size_t tolerance = std::max<std::size_t>(2, text.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& candidate : candidates) {
    const std::size_t distance = EditDistance(text, candidate);
    if (distance <= tolerance) near.emplace_back(distance, candidate);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (const auto& [distance, candidate] : near)
    if (nearest.size() < most && std::find(nearest.begin(), nearest.end(), candidate) == nearest.end())
      nearest.push_back(candidate);
  return nearest;
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += separator;
    joined += text;
  }
  return joined;
}

}  // namespace quentara::cli
