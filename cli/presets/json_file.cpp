#include "presets/json_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <vector>

#include "errors.h"

namespace quentara::cli {
namespace {

std::string ReadText(const std::string& path) {
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  std::string text;
  char chunk[4096];
  while (const std::size_t count = file ? std::fread(chunk, 1, sizeof chunk, file.get()) : 0) text.append(chunk, count);
  // A folder opens but does not read.
  if (!file || std::ferror(file.get())) throw UsageError(path + ": cannot be read: " + std::strerror(errno));
  return text;
}

/// Refuses an object with a key twice, of which the last would silently win.
class KeyCheck {
 public:
  bool operator()(int, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) open_.emplace_back();
    if (event == Json::parse_event_t::object_end) open_.pop_back();
    if (event == Json::parse_event_t::key && !open_.back().insert(parsed.get<std::string>()).second)
      throw UsageError("has " + parsed.dump() + " twice");
    return true;
  }

 private:
  std::vector<std::set<std::string>> open_;
};

Json Parse(const std::string& text) {
  KeyCheck keys;
  try {
    Json json = Json::parse(
        text, [&](int depth, Json::parse_event_t event, Json& parsed) { return keys(depth, event, parsed); });
    if (!json.is_object()) throw UsageError("is not a JSON object");
    return json;
  } catch (const Json::parse_error& error) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
    throw UsageError("is broken JSON at line " + std::to_string(1 + std::count(text.begin(), end, '\n')));
  } catch (const Json::exception&) {
    throw UsageError("holds a number beyond all bounds");
  }
}

}  // namespace

Json ReadJsonFile(const std::string& path) try { return Parse(ReadText(path)); } catch (const UsageError& error) {
  throw UsageError(path + ": " + error.what());
}

}  // namespace quentara::cli
