#include "presets/animation.h"

#include <gmock/gmock.h>

#include <cmath>

#include "cli/media_support.h"
#include "cli/small_table.h"
#include "errors.h"
#include "support/temporary_folder.h"

namespace quentara::cli {
namespace {

Animation ReadAnimation(const std::string& text) {
  const TemporaryFolder folder;
  media::WriteFile(folder / "keys.json", text);
  return Animation(folder / "keys.json", SmallTable());
}

TEST(Animation, GoesFromKeyToKey) {
  const Animation animation = ReadAnimation(R"({
      "Flat Shaded": {"Flatness": [{"frame": 10, "value": 8}, {"frame": 14, "value": 10, "interpolation": "hold"},
                                   {"frame": 16, "value": 0, "interpolation": "linear"}, {"frame": 19, "value": 3}],
                      "Strength": [{"seconds": 0.0, "value": 0.85}, {"seconds": 1, "value": 0.15}]},
      "roto": [{"frame": 10, "value": "No Roto"}, {"frame": 15, "value": "2"}],
      "Dots": [{"seconds": 0.5, "value": false}, {"seconds": 0.75, "value": true, "interpolation": "hold"}],
      "Outline Color": [{"seconds": -1, "value": "#ff0010"}, {"seconds": 1, "value": "#00ff13"}]})");
  // Frame 10 stands at 0 seconds, 8 frames a second.
  const std::pair<int, std::vector<std::string>> expected[] = {
      {-5, {"No Roto", "off", "8", "0.85", "#ff0010"}},   {10, {"No Roto", "off", "8", "0.85", "#808012"}},
      {11, {"No Roto", "off", "9", "0.7625", "#708f12"}}, {13, {"No Roto", "off", "10", "0.5875", "#50af12"}},
      {14, {"No Roto", "off", "10", "0.5", "#40bf12"}},   {15, {"2", "off", "10", "0.4125", "#30cf12"}},
      {16, {"2", "on", "0", "0.325", "#20df13"}},         {99, {"2", "on", "3", "0.15", "#00ff13"}}};
  const ParameterTable table = SmallTable();
  for (const auto& [frame, texts] : expected) {
    const ParameterValues values = animation.At(frame, (frame - 10) / 8.0, table.Defaults());
    auto text = texts.begin();
    for (const char* name : {"Roto", "Dots", "Flatness", "Flat Shaded/Strength", "Outline Color"}) {
      const Parameter& row = table.Find(name);
      const Value& value = values[row.index - 1];
      const double tolerance = row.kind == ParameterKind::Fixed ? 1.6 / 65536 : 0;
      EXPECT_NEAR(ParseValue(row, *text).number, value.number, tolerance) << name << " at " << frame;
      EXPECT_EQ(ParseValue(row, *text++).colour, value.colour) << name << " at " << frame;
      EXPECT_EQ(std::floor(value.number * 65536), value.number * 65536);
    }
    EXPECT_EQ(table.Defaults()[7], values[7]);  // without keys
  }
  EXPECT_EQ(table.Defaults(), Animation().At(3, 3, table.Defaults()));
}

TEST(Animation, IsRefusedInOneLine) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"Flatnes": []})", "there is no parameter \"Flatnes\"; did you mean"},
      {R"({"Flatness": []})", "\"Flat Shaded/Flatness\" needs a list of keys, not []"},
      {R"({"Flatness": 5})", "needs a list of keys, not 5"},
      {R"({"Flatness": [5]})", "has a key 5 that is no object"},
      {R"({"Flatness": [{"frame": 1}]})", "has a key without \"value\""},
      {R"({"Flatness": [{"value": 1}]})", "has a key without \"frame\""},
      {R"({"Flatness": [{"frame": 1, "seconds": 1, "value": 1}]})", "has a key with \"frame\" beside \"seconds\""},
      {R"({"Flatness": [{"frame": 1, "value": 1}, {"seconds": 2, "value": 1}]})", "with \"seconds\" beside \"frame\""},
      {R"({"Flatness": [{"frame": 1, "value": 1, "hold": true}]})", "has a key with \"hold\" beside"},
      {R"({"Flatness": [{"frame": 1.5, "value": 1}]})", "a key at frame 1.5, which is no whole number"},
      {R"({"Flatness": [{"seconds": "1", "value": 1}]})", "a key at seconds \"1\", which is no number"},
      {R"({"Roto": [{"frame": 1, "value": "2", "interpolation": "linear"}]})", "\"Roto\" has no values between"},
      {R"({"Flatness": [{"frame": 1, "value": 1, "interpolation": "ease"}]})", "the interpolation \"ease\", which is"},
      {R"({"Flatness": [{"seconds": 5, "value": 1}, {"seconds": 5.0, "value": 2}]})", "seconds 5.0 that does not come"},
      {R"({"Flatness": [{"frame": 1, "value": 1}], "7": [{"frame": 1, "value": 2}]})", "Flatness\" twice"},
      {R"({"Flatness": [{"frame": 1, "frame": 2, "value": 1}]})", "has \"frame\" twice"},
  };
  for (const auto& [text, message] : cases) {
    const std::string said = media::MessageOf<UsageError>([text = text] { ReadAnimation(text); });
    EXPECT_THAT(said, testing::HasSubstr(message)) << text;
    EXPECT_THAT(said, testing::ContainsRegex("^/.*/keys.json: [^\n]*$")) << text;
  }
}

}  // namespace
}  // namespace quentara::cli
