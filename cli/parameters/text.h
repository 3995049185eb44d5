/// Comparing and reading the short texts of a command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quentara::cli {

/// Without the blanks at both ends.
std::string_view Trimmed(std::string_view text);

/// Equal but for the case of ASCII letters.
bool SameText(std::string_view a, std::string_view b);

/// The whole text as a finite decimal number, '.' being the decimal point in every locale.
std::optional<double> ToNumber(std::string_view text);

/// The whole text as a decimal integer.
std::optional<int> ToInteger(std::string_view text);

/// Up to `most` of the candidates that are likely meant by a mistyped `text`, nearest first: by Levenshtein distance,
/// ignoring case.
std::vector<std::string> NearestTexts(std::string_view text, const std::vector<std::string>& candidates,
                                      std::size_t most = 3);

/// The texts, separated by `separator`.
std::string Joined(const std::vector<std::string>& texts, std::string_view separator = ", ");

}  // namespace quentara::cli
