#include "presets/animation.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>

#include "errors.h"
#include "support/temporary_folder.h"

namespace quentara::cli {
namespace {

using Kind = ParameterKind;

ParameterTable SmallTable() {
  std::vector<Parameter> rows;
  const auto add = [&](const char* group, const char* name, Kind kind) {
    Parameter row;
    row.index = static_cast<int>(rows.size()) + 1;
    row.id = 10 + row.index;
    row.group = group;
    row.name = name;
    row.kind = kind;
    row.valid = {0, 100};
    row.choices = {"Wash", "Ink", "Oil"};
    row.standard.number = 1;
    rows.push_back(row);
  };
  add("", "Roto", Kind::Popup);
  add("Wash", "Wash", Kind::CheckBox);
  add("Wash", "Radius", Kind::Slider);
  add("Wash", "Strength", Kind::Fixed);
  add("Wash", "Mix", Kind::Percent);
  add("Wash", "Ink", Kind::Colour);
  return ParameterTable(rows);
}

Animation ReadAnimation(const std::string& text) {
  const TemporaryFolder folder;
  std::ofstream(folder / "keys.json") << text;
  return Animation(folder / "keys.json", SmallTable());
}

TEST(Animation, GoesFromKeyToKey) {
  const Animation animation = ReadAnimation(R"({
      "Wash/Radius": [{"frame": 10, "value": 8}, {"frame": 14, "value": 10, "interpolation": "hold"},
                      {"frame": 16, "value": 0, "interpolation": "linear"}, {"frame": 19, "value": 3}],
      "roto": [{"frame": 10, "value": "Ink"}, {"frame": 15, "value": "Oil"}],
      "Wash": {"Wash": [{"seconds": 0.5, "value": false}, {"seconds": 0.75, "value": true, "interpolation": "hold"}],
               "Strength": [{"seconds": 0.0, "value": 0.85}, {"seconds": 1, "value": 0.15}],
               "Ink": [{"seconds": -1, "value": "#ff0010"}, {"seconds": 1, "value": "#00ff13"}]}})");
  // Frame 10 stands at 0 seconds, 8 frames a second; "Mix" has no keys.
  const std::pair<int, std::vector<std::string>> expected[] = {
      {-5, {"Ink", "off", "8", "0.85", "1", "#ff0010"}},    {10, {"Ink", "off", "8", "0.85", "1", "#808012"}},
      {11, {"Ink", "off", "9", "0.7625", "1", "#708f12"}},  {12, {"Ink", "off", "9", "0.675", "1", "#609f12"}},
      {13, {"Ink", "off", "10", "0.5875", "1", "#50af12"}}, {14, {"Ink", "off", "10", "0.5", "1", "#40bf12"}},
      {15, {"Oil", "off", "10", "0.4125", "1", "#30cf12"}}, {16, {"Oil", "on", "0", "0.325", "1", "#20df13"}},
      {17, {"Oil", "on", "1", "0.2375", "1", "#10ef13"}},   {99, {"Oil", "on", "3", "0.15", "1", "#00ff13"}}};
  const ParameterTable table = SmallTable();
  for (const auto& [frame, texts] : expected) {
    const ParameterValues values = animation.At(frame, (frame - 10) / 8.0, table.Defaults());
    for (std::size_t i = 0; i < texts.size(); ++i) {
      SCOPED_TRACE(testing::Message() << table.Rows()[i].name << " at " << frame);
      if (table.Rows()[i].kind == Kind::Fixed)
        EXPECT_NEAR(std::stod(texts[i]), values[i].number, 1.6 / 65536);
      else
        EXPECT_EQ(texts[i], FormatValue(table.Rows()[i], values[i]));
      EXPECT_EQ(std::floor(values[i].number * 65536), values[i].number * 65536);
    }
  }
  EXPECT_EQ(table.Defaults(), Animation().At(3, 3, table.Defaults()));
}

TEST(Animation, IsRefusedInOneLine) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"Radios": []})", "there is no parameter \"Radios\"; did you mean"},
      {R"({"Radius": []})", "\"Wash/Radius\" needs a list of keys, not []"},
      {R"({"Radius": 5})", "\"Wash/Radius\" needs a list of keys, not 5"},
      {R"({"Radius": [5]})", "\"Wash/Radius\" has a key 5 that is no object"},
      {R"({"Radius": [{"frame": 1}]})", "\"Wash/Radius\" has a key without \"value\""},
      {R"({"Radius": [{"value": 1}]})", "\"Wash/Radius\" has a key without \"frame\""},
      {R"({"Radius": [{"frame": 1, "seconds": 1, "value": 1}]})", "has a key with \"frame\" beside \"seconds\""},
      {R"({"Radius": [{"frame": 1, "value": 1}, {"seconds": 2, "value": 1}]})", "with \"seconds\" beside \"frame\""},
      {R"({"Radius": [{"frame": 1, "value": 1, "hold": true}]})", "has a key with \"hold\" beside"},
      {R"({"Radius": [{"frame": 1.5, "value": 1}]})", "a key at frame 1.5, which is no whole number"},
      {R"({"Radius": [{"seconds": "1", "value": 1}]})", "a key at seconds \"1\", which is no number"},
      {R"({"Radius": [{"frame": 1, "value": 101}]})", "\"Wash/Radius\" takes a whole number from 0 to 100"},
      {R"({"Radius": [{"frame": 1, "value": 1.5}]})", "\"Wash/Radius\" takes a whole number from 0 to 100"},
      {R"({"Roto": [{"frame": 1, "value": 2}]})", "\"Roto\" is one of Wash, Ink, Oil, not 2"},
      {R"({"Roto": [{"frame": 1, "value": "Ink", "interpolation": "linear"}]})", "\"Roto\" has no values between"},
      {R"({"Radius": [{"frame": 1, "value": 1, "interpolation": "ease"}]})", "the interpolation \"ease\", which is"},
      {R"({"Radius": [{"frame": 5, "value": 1}, {"frame": 4, "value": 2}]})",
       "frame 4 that does not come after the one at 5"},
      {R"({"Radius": [{"seconds": 5, "value": 1}, {"seconds": 5.0, "value": 2}]})",
       "seconds 5.0 that does not come after"},
      {R"({"Radius": [{"frame": 1, "value": 1}], "13": [{"frame": 1, "value": 2}]})", "has \"Wash/Radius\" twice"},
      {R"({"Radius": [{"frame": 1, "frame": 2, "value": 1}]})", "has \"frame\" twice"},
  };
  for (const auto& [text, message] : cases) {
    std::string said = "no error";
    try {
      ReadAnimation(text);
    } catch (const UsageError& error) {
      said = error.what();
    }
    EXPECT_THAT(said, testing::HasSubstr(message)) << text;
    EXPECT_THAT(said, testing::ContainsRegex("^/.*/keys.json: [^\n]*$")) << text;
  }
}

}  // namespace
}  // namespace quentara::cli
