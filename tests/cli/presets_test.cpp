#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "cli/program.h"

namespace quentara {
namespace {

using nlohmann::json;
using testing::ElementsAre;

struct Preset : ProgramTest {
  json ParamsOf(const std::string& options) const { return json::parse(Succeed("params --json " + options).out); }
};

/// A value that the parameter takes and that is not its default.
json OtherValue(const json& row) {
  if (row["kind"] == "popup") return row["choices"][row["value"] == row["choices"][0] ? 1 : 0];
  if (row["kind"] == "check box") return !row["value"];
  if (row["kind"] == "colour") return "#12ab9f";
  return row["kind"] == "slider" ? row["valid"][row["value"] == row["valid"][0] ? 1 : 0] : json(1.25);
}

TEST_F(Preset, KeepsEveryParameterOnHostsWithAndWithoutGroups) {
  for (const std::string host : {"--host-version 13.27 ", "--host-version 12.11 "}) {
    std::string changes;
    json expected = ParamsOf(host);
    for (json& row : expected)
      if (row.contains("value")) {
        const json value = row["value"] = OtherValue(row);
        changes += " --set '" + to_string(row["id"]) + "=";
        changes += (value.is_string() ? value.get<std::string>() : value.dump()) + "'";
      }
    ParamsOf(host + "-y --save-preset all.json" + changes);
    const json read = ParamsOf(host + "--preset all.json");
    for (std::size_t i = 0; i < expected.size(); ++i)
      EXPECT_EQ(expected[i].value("value", json()), read.at(i).value("value", json())) << expected[i];
    EXPECT_EQ("2.1.7", json::parse(media::ReadFile(folder / "all.json"))["effect version"]);
  }
}

TEST_F(Preset, HoldsWhatDiffersAndLaterOnesAndSetWin) {
  media::WriteFile(folder / "a.json",
                   R"({"parameters": {"Roto": "gouache", "Flat Shaded": {"Flatness": 20, "Quality": "Fast"},
                                                  "Comic Outlines": {"Comic Outlines": "off", "Strength": 10}}})");
  media::WriteFile(folder / "b.json",
                   R"({"parameters": {"Flat Shaded/Flatness": 30.0, "Comic Outlines/Strength": 12.5}})");
  const std::string options =
      "--set 'Flat Shaded/Quality=High' --preset a.json --preset b.json --save-preset saved.json";
  ParamsOf(options);
  EXPECT_EQ(json::parse(R"({"Roto": "Gouache", "Flat Shaded": {"Flatness": 30},
                            "Comic Outlines": {"Comic Outlines": false, "Strength": 12.5}})"),
            json::parse(media::ReadFile(folder / "saved.json"))["parameters"]);

  ExpectFailure(4, "params " + options, "saved.json: exists already");
  ParamsOf("-y --save-preset saved.json");
  EXPECT_EQ(json::object(), json::parse(media::ReadFile(folder / "saved.json"))["parameters"]);
  EXPECT_THAT(folder.Names(), ElementsAre("a.json", "b.json", "saved.json"));
}

TEST_F(Preset, IsRefusedInOneLineThatNamesTheFileAndTheParameter) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"parameters": {"Flat Shaded": {"Flatnes": 3}}})", "no parameter \"Flat Shaded/Flatnes\"; did you mean"},
      {R"({"parameters": {"Flat Shaded": {"Flatness": 1.5}}})", "\"Flat Shaded/Flatness\" .*not \"1.5\""},
      {R"({"parameters": {"Flat Shaded": {"Flatness": 1e300}}})", "\"Flat Shaded/Flatness\" .*not \"1e\\+300\""},
      {R"({"parameters": {"Flat Shaded": {"Flatness": "14"}}})", "\"Flat Shaded/Flatness\" .*not \"14\""},
      {R"({"parameters": {"Flat Shaded": {"Flatness": {"a": 1}}}})", "\"Flat Shaded/Flatness\" .*not \\{\"a\":1\\}"},
      {R"({"parameters": {"Roto": 2}})", "\"Roto\" is one of .*, not 2"},
      {R"({"parameters": {"Comic Outlines": {"Comic Outlines": 1}}})", "takes on or off, not 1"},
      {R"({"parameters": {"Outline Color": [1, 2, 3]}})", "\"Color Effects/Outline Color\" takes a colour"},
      {R"({"parameters": {"Roto": "Gouache", "Roto": "Bristle"}})", "has \"Roto\" twice"},
      {R"({"parameters": {"7": 1, "Flat Shaded": {"Flatness": 2}}})", "has \"Flat Shaded/Flatness\" twice"},
      {R"({"parameter": {}})", "has no \"parameter\", only"},
      {R"({"description": 3, "parameters": {}})", "\"description\" must be a text"},
      {R"({"parameters": []})", "an object \"parameters\""},
      {R"({"parameters": {"Blend With Original": 1e999}})", "beyond all bounds"},
      {"[]", "not a JSON object"},
      {"", "broken JSON at line 1"},
      {"{\n\"parameters\": {\n\"Roto\" \"Gouache\"}}", "broken JSON at line 3"},
  };
  for (const auto& [text, message] : cases) {
    media::WriteFile(folder / "bad.json", text);
    ExpectFailure(2, "params --preset bad.json", "bad.json: .*" + std::string(message));
  }
  const std::pair<const char*, const char*> commands[] = {
      {"--preset none.json", "none.json: cannot be read: No such file"},
      {"--preset ./", "cannot be read: Is a directory"},
      {"--preset comix-book", "no preset \"comix-book\"; did you mean comic-book"},
      {"--preset xyzzy", "\"quentara presets\" lists them"},
      {"--save-preset picture.png", "picture.png: .*ends in .json"},
  };
  for (const auto& [options, message] : commands) ExpectFailure(2, std::string("params ") + options, message);
  EXPECT_THAT(folder.Names(), ElementsAre("bad.json"));
}

TEST_F(Preset, FilesThatComeWithTheProgramLoadAndDifferFromTheDefaults) {
  std::set<json> tables = {ParamsOf("")};
  std::istringstream lines(Succeed("presets").out);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_THAT(line, testing::MatchesRegex("[a-z-]+  +[A-Z].*[a-z]")) << line;
    EXPECT_TRUE(tables.insert(ParamsOf("--preset " + line.substr(0, line.find(' ')))).second) << line;
  }
  EXPECT_EQ(9u, tables.size());

  media::WritePng(folder / "in.png", media::BlankFrame(20, 200, false));
  Succeed("sheet in.png -o out.png --presets --columns 50");
  const media::Frame picture = media::ReadPicture(folder / "out.png");
  EXPECT_GE(picture.width, 9 * 20);
  EXPECT_LT(picture.height, 2 * 200);  // one row: the source and all presets
}

TEST_F(Preset, OverTimeRendersEachFrameAsWithSet) {
  for (const int number : {9, 10, 11})
    media::WritePng(folder / ("in." + std::to_string(number) + ".png"),
                    media::RandomFrame(23, 17, false, true, number));
  media::WriteFile(folder / "keys.json", R"({
    "Main Blur": {"Radius": [{"frame": 9, "value": 0}, {"frame": 11, "value": 9}]},
    "Color Effects/Outline Color": [{"frame": 10, "value": "#ff0000"}, {"frame": 12, "value": "#0000ff"}],
    "Roto": [{"seconds": 0, "value": "No Roto"}, {"seconds": 0.2, "value": "Gouache"}]})");
  const auto render = [&](const std::string& options) {
    Succeed("render in.#.png -yqo out.#.png --set 'Main Blur/Thresh=35' --set Roto=Bristle " + options);
  };
  render("--animate keys.json --fps 10 --frames 10-11 --save-preset still.json");
  const std::pair<std::string, const char*> expected[] = {
      {"10", " --set 'Main Blur/Radius=5' --set 'Roto=No Roto' --set 'Outline Color=#ff0000'"},
      {"11", " --set 'Main Blur/Radius=9' --set Roto=Gouache --set 'Outline Color=128,0,128'"}};
  for (const auto& [number, settings] : expected) {
    const std::string name = folder / ("out." + number + ".png");
    const std::string animated = media::ReadFile(name);
    render("--frames " + number + settings);
    EXPECT_EQ(media::ReadFile(name), animated) << number;
  }
  EXPECT_EQ("Bristle", json::parse(media::ReadFile(folder / "still.json"))["parameters"]["Roto"]);

  media::WriteFile(folder / "keys.json", R"({"Main Blur/Radius": [{"frame": 9, "value": 31}]})");
  ExpectFailure(2, "render in.#.png -o new.#.png --animate keys.json",
                "keys.json: \"Main Blur/Radius\" takes .* 0 to 30, not \"31\"");
}

}  // namespace
}  // namespace quentara
