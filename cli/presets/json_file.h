/// JSON files of the program's own, as users write them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quentara::cli {

/// Keeps the order in which things are written.
using Json = nlohmann::ordered_json;

/// The object that a file holds.
/// @throws UsageError that names the file, when it cannot be read, is no JSON object, or has a key twice.
Json ReadJsonFile(const std::string& path);

}  // namespace quentara::cli
