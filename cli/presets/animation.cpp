#include "presets/animation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "errors.h"
#include "presets/json_value.h"
#include "presets/parameter_object.h"

namespace quentara::cli {
namespace {

constexpr const char *kFrame = "frame", *kSeconds = "seconds", *kValue = "value", *kInterpolation = "interpolation";

bool OnlyHolds(ParameterKind kind) {
  return kind == ParameterKind::Popup || kind == ParameterKind::CheckBox;
}

/// The nearest multiple of 1 / steps, halves upwards.
double Rounded(double number, double steps) {
  return std::floor(number * steps + 0.5) / steps;
}

[[noreturn]] void Fail(const Parameter& row, const std::string& text) {
  throw UsageError("\"" + row.Path() + "\" " + text);
}

void CheckMembers(const Parameter& row, const char* unit, const Json& key) {
  const auto known = {unit, kValue, kInterpolation};
  for (const auto& [name, value] : key.items())
    if (std::find(known.begin(), known.end(), name) == known.end())
      Fail(row, "has a key with " + Json(name).dump() + " beside \"" + unit + "\", \"value\" and \"interpolation\"");
  if (!key.contains(unit) || !key.contains(kValue))
    Fail(row, "has a key without \"" + std::string(key.contains(unit) ? kValue : unit) + "\"");
}

bool Holds(const Parameter& row, const Json& key) {
  if (!key.contains(kInterpolation)) return OnlyHolds(row.kind);
  const Json& json = key[kInterpolation];
  if (json != "linear" && json != "hold")
    Fail(row, "has the interpolation " + json.dump() + ", which is neither \"linear\" nor \"hold\"");
  if (json == "linear" && OnlyHolds(row.kind)) Fail(row, "has no values between two others; its keys can only hold");
  return json == "hold";
}

}  // namespace

Animation::Key Animation::ReadKey(const Parameter& row, const char* unit, const Json& json) {
  CheckMembers(row, unit, json);
  const Json& time = json[unit];
  if (unit == kFrame ? !time.is_number_integer() : !time.is_number())
    Fail(row, "has a key at " + std::string(unit) + " " + time.dump() + ", which is no " +
                  (unit == kFrame ? "whole number" : "number"));
  return {time.get<double>(), FromJson(row, json[kValue]), Holds(row, json)};
}

Animation::Track Animation::ReadTrack(const Parameter& row, const Json& json) {
  if (!json.is_array() || json.empty()) Fail(row, "needs a list of keys, not " + json.dump());
  for (const Json& key : json)
    if (!key.is_object()) Fail(row, "has a key " + key.dump() + " that is no object");
  Track track{static_cast<std::size_t>(row.index) - 1, row.kind, json[0].contains(kSeconds), {}};
  const char* unit = track.inSeconds ? kSeconds : kFrame;
  for (const Json& key : json) {
    track.keys.push_back(ReadKey(row, unit, key));
    if (const std::size_t last = track.keys.size() - 1; last > 0 && track.keys[last].time <= track.keys[last - 1].time)
      Fail(row, "has a key at " + std::string(unit) + " " + key[unit].dump() + " that does not come after the one at " +
                    json[last - 1][unit].dump());
  }
  return track;
}

Animation::Animation(const std::string& path, const ParameterTable& table) {
  const Json json = ReadJsonFile(path);
  try {
    ForEachParameter(json, table,
                     [&](const Parameter& row, const Json& keys) { tracks_.push_back(ReadTrack(row, keys)); });
  } catch (const UsageError& error) {
    throw UsageError(path + ": " + error.what());
  }
}

Value Animation::ValueAt(const Track& track, double time) {
  const auto after = std::upper_bound(track.keys.begin(), track.keys.end(), time,
                                      [](double t, const Key& key) { return t < key.time; });
  if (after == track.keys.begin()) return after->value;
  const Key& before = *(after - 1);
  if (after == track.keys.end() || before.hold) return before.value;

  // Whole frames and whole values have a whole numerator, so the quotient alone rounds.
  const auto between = [&](double a, double b) {
    return (a * (after->time - time) + b * (time - before.time)) / (after->time - before.time);
  };
  const double steps = track.kind == ParameterKind::Slider ? 1 : 65536;
  Value value{Rounded(between(before.value.number, after->value.number), steps), {}};
  for (std::size_t c = 0; c < 3; ++c)
    value.colour[c] = static_cast<std::uint8_t>(Rounded(between(before.value.colour[c], after->value.colour[c]), 1));
  return value;
}

ParameterValues Animation::At(std::int64_t frame, double seconds, ParameterValues values) const {
  for (const Track& track : tracks_)
    values.at(track.place) = ValueAt(track, track.inSeconds ? seconds : static_cast<double>(frame));
  return values;
}

}  // namespace quentara::cli
