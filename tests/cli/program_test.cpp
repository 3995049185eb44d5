#include "cli/program.h"

#include <nlohmann/json.hpp>

#include "cli/clip_maker.h"

namespace quentara {
namespace {

using media::Frame;
using media::ReadPicture;
using testing::ContainsRegex;
using testing::ElementsAre;

const std::string kNothing = " --set 'Roto=No Roto' --set 'Main Blur/Type=None' --set 'Comic Outlines=off'";
const std::string kFake = " --effect '" FAKE_EFFECT "'";

struct Render : ProgramTest {};
struct Sheet : ProgramTest {};
struct Params : ProgramTest {};

void WriteRandomPng(const std::string& path, unsigned seed = 1, bool deep = false) {
  media::WritePng(path, media::RandomFrame(23, 17, deep, false, seed));
}

TEST_F(Render, WithEverythingOffGivesBackItsInputInTheEffectsEightBits) {
  for (const bool deep : {false, true}) {
    WriteRandomPng(folder / "in.png", 1, deep);
    Succeed("render in.png -y -o out.png" + kNothing);
    Frame expected = ReadPicture(folder / "in.png");
    ASSERT_EQ(deep, expected.deep);
    for (int i = 0; deep && i < expected.width * expected.height * 4; ++i)
      if (i % 4 != 0) expected.Deep(0)[i] = static_cast<std::uint16_t>((expected.Deep(0)[i] * 255 >> 15) * 32768 / 255);
    EXPECT_EQ(expected.pixels, ReadPicture(folder / "out.png").pixels);
  }
}

TEST_F(Render, KeepsTheNumbersOfASequenceAndReportsItsGaps) {
  for (const int number : {3, 4, 6}) WriteRandomPng(folder / ("in." + std::to_string(number) + ".png"), number);
  const Outcome outcome = Succeed("render in.#.png -o out.%02d.png" + kFake);
  EXPECT_THAT(outcome.err, ContainsRegex("gaps: 5\n(.*\n)*3 frames in "));
  EXPECT_THAT(folder.Names(),
              ElementsAre("in.3.png", "in.4.png", "in.6.png", "out.03.png", "out.04.png", "out.06.png"));
  Frame expected = ReadPicture(folder / "in.6.png");
  for (std::uint8_t& sample : expected.pixels) sample = static_cast<std::uint8_t>(~sample);
  EXPECT_EQ(expected.pixels, ReadPicture(folder / "out.06.png").pixels);
}

TEST_F(Render, GivesAFrameTheSameBytesAloneInItsClipAndWithAnyJobs) {
  for (const int number : {1, 2, 3})
    media::WritePng(folder / ("in." + std::to_string(number) + ".png"),
                    media::RandomFrame(40, 300, false, false, number));
  const std::string look = " -y --set 'Soft Outlines=on' --set 'Marker Outlines=on'";
  Succeed("render in.2.png -o alone.png --threads 3" + look);
  for (const char* split : {"--threads 1", "--threads 5 --jobs 1", "--threads 2 --jobs 2", "--threads 8 --jobs 3"}) {
    Succeed("render in.#.png -o out.#.png " + std::string(split) + look);
    EXPECT_EQ(media::ReadFile(folder / "alone.png"), media::ReadFile(folder / "out.2.png")) << split;
  }
}

TEST_F(Sheet, ShowsEveryStyleOfOneFrameAndNeverOverwritesUnasked) {
  WriteRandomPng(folder / "in.png");
  const std::string sheet = "sheet in.png -o sheet.png --columns 30";
  Succeed(sheet);
  // The frame and nine choices of style in a row of 23 pixels each, and at least seven outlines below.
  const Frame picture = ReadPicture(folder / "sheet.png");
  EXPECT_GE(picture.width, 10 * 23);
  EXPECT_GE(picture.height, 2 * 17);
  ExpectFailure(4, sheet, "exists already");
  ExpectFailure(5, sheet + " -yq --set Mode=Fail" + kFake, "No paint left");
  EXPECT_EQ(picture.pixels, ReadPicture(folder / "sheet.png").pixels);
}

TEST_F(Sheet, ShowsAFrameOfAVideoUprightWithSquarePixels) {
  media::ClipOptions clip;  // 96 x 64, turned to 64 x 96, its pixels half as wide as high
  clip.rotation = 90;
  clip.setUp = [](AVCodecContext& encoder) { encoder.sample_aspect_ratio = {2, 1}; };
  media::MakeClip(folder / "in.mov", clip);
  Succeed("sheet in.mov -o out.png --frame 3 --columns 1" + kFake);
  const Frame sheet = ReadPicture(folder / "out.png");
  int pictureRows = 0;
  for (int y = 0; y < sheet.height; ++y) {
    int coloured = 0;
    for (int x = 0; x < sheet.width; ++x)
      coloured += !std::equal(sheet.Bytes(y), sheet.Bytes(y) + 4, sheet.Bytes(y) + 4 * x);
    pictureRows += coloured == 32;
  }
  EXPECT_NEAR(96, pictureRows, 5);  // of the source; inverted alpha leaves nothing of the tile to see
}

TEST_F(Render, ReducesAPreviewWithoutLettingTransparentPixelsShow) {
  Frame frame = media::BlankFrame(4, 4, false);
  const std::uint8_t samples[2][16] = {{255, 10, 20, 30, 255, 10, 20, 30, 255, 0, 0, 250, 0, 250, 0, 0},
                                       {255, 30, 40, 50, 255, 30, 40, 50, 255, 0, 0, 250, 0, 250, 0, 0}};
  for (int y = 0; y < 4; ++y) std::copy(std::begin(samples[y % 2]), std::end(samples[y % 2]), frame.Bytes(y));
  media::WritePng(folder / "in.png", frame);
  Succeed("render in.png -o out.png --preview 1/2" + kNothing);
  const Frame reduced = ReadPicture(folder / "out.png");
  ASSERT_EQ(std::pair(2, 2), std::pair(reduced.width, reduced.height));
  const int expected[] = {255, 20, 30, 40, 128, 0, 0, 250};
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(expected[i % 8], reduced.pixels[i], 1) << i;
}

TEST_F(Render, HalvesRadiiForAPictureThatIsAlreadyReduced) {
  WriteRandomPng(folder / "in.png");
  const auto render = [&](const std::string& options) {
    Succeed("render in.png -y -o out.png --set 'Roto=No Roto' --set 'Comic Outlines=off' " + options);
    return media::ReadFile(folder / "out.png");
  };
  EXPECT_EQ(render("--set 'Main Blur/Radius=3'"), render("--set 'Main Blur/Radius=6' --downsample 1/2"));
  EXPECT_NE(render("--set 'Main Blur/Radius=3'"), render("--set 'Main Blur/Radius=6'"));
}

TEST_F(Render, KeepsTheFramesAndTheRateOfAVideoInAPreview) {
  media::ClipOptions clip;
  clip.audio = {"eng"};
  media::MakeClip(folder / "in.mp4", clip);
  EXPECT_EQ("", Succeed("render in.mp4 --quiet -o out.mkv --preview 1/2 --no-audio" + kNothing).err);
  const media::Clip out = media::ReadClip(folder / "out.mkv");
  EXPECT_EQ(std::pair(std::size_t{10}, 48), std::pair(out.times.size(), out.stream->codecpar->width));
  EXPECT_NEAR(25, av_q2d(out.stream->avg_frame_rate), 1e-9);
  EXPECT_TRUE(out.audio.empty());
}

TEST_F(ProgramTest, TellsMistakesInOneLineAndChangesNothing) {
  WriteRandomPng(folder / "in.png");
  WriteRandomPng(folder / "old.png", 7);
  const std::string old = media::ReadFile(folder / "old.png");
  media::WriteFile(folder / "cut.png", old.substr(0, 99));
  media::WriteFile(folder / "seq.1.png", old);
  media::WriteFile(folder / "fonts.conf", "<fontconfig/>");
  const std::vector<std::string> names = folder.Names();
  const auto expectFailure = [&](int status, const std::string& arguments, const char* message) {
    ExpectFailure(status, arguments, message);
    EXPECT_EQ(names, folder.Names()) << arguments;
    EXPECT_EQ(old, media::ReadFile(folder / "old.png")) << arguments;
  };
  const std::string render = "render in.png -o out.png ", sheet = "sheet in.png -o out.png ";
  const std::string fake = render + kFake + " --set Mode=", badlySetUp = "params" + kFake + " --host-version 99.";
  const struct {
    int status;
    std::string arguments;
    const char* message;
  } cases[] = {
      {2, "", "say what to do: render"},
      {2, "paint", "no command \"paint\""},
      {2, "render in.png", "--output is required"},
      {2, render + "--bogus", "--bogus"},
      {2, render + "--threads 0", "1 to 256"},
      {2, render + "--frames 5-", "5-"},
      {2, render + "--preview 3/2", "--preview takes a fraction"},
      {2, render + "--fps 0", "--fps takes frames per second"},
      {2, render + "--preview 1/2 --downsample 1/2", "excludes"},
      {2, render + "--host-version new", "--host-version takes a version"},
      {2, render + "--set Flatnes=3", "did you mean \"Flatness\""},
      {2, sheet + "--tile 5", "--tile"},
      {2, sheet + "--columns 0", "--columns"},
      {3, "render none.png -o out.png", "none.png: No such file"},
      {3, "render cut.png -o out.png", "cut.png"},
      {3, "render seq.%d.png -o out.%d.png --frames 1-2", "missing: 2"},
      {3, sheet + "--frame 2", "in.png"},
      {4, "render in.png -o old.png", "old.png: exists"},
      {4, "render in.png -o in.png -y", "is the input itself"},
      {4, "render in.png -o none/out.png", "none/out.png"},
      {4, "sheet in.png -o out.mp4", "out.mp4: a contact sheet is a picture"},
      {4, "sheet in.png -o in.png -y", "is the input itself"},
      {5, render + "--effect '" NO_EFFECT "'", "is not an effect; it has no PluginEntry"},
      {5, render + "--effect in.png", "in.png is not an effect; it cannot be loaded"},
      {5, render + "--effect /nowhere.so", "there is no effect at /nowhere.so"},
      {5, fake + "Fail", "the effect failed: No paint left. \\(error 512\\)"},
      {5, "render in.png -yo old.png --set 'Mode=Fail Silently'" + kFake, "ran out of memory"},
      {5, fake + "Grow", "the effect asks for a frame of another size"},
      {5, badlySetUp + "1", "the effect ran out of memory \\(error 4\\)"},
      {5, badlySetUp + "2", "the effect defined 8 parameters but says that it has 9"},
      {5, badlySetUp + "3", "the effect failed with error 514"},
      {5, badlySetUp + "4", "the effect failed with error 516"},
  };
  for (const auto& [status, arguments, message] : cases) expectFailure(status, arguments, message);
  setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
  expectFailure(4, sheet, "there is no font for the labels");
  unsetenv("FONTCONFIG_FILE");
}

TEST_F(Render, WritesTheSameBytesHoweverManyFramesAreRenderedAtOnce) {
  media::MakeClip(folder / "in.mp4");
  const auto render = [&](const std::string& options) {
    Succeed("render in.mp4 -y -o out.%d.png " + options);
    std::vector<std::string> files;
    for (int i = 1; i <= 10; ++i) files.push_back(media::ReadFile(folder / ("out." + std::to_string(i) + ".png")));
    return files;
  };
  const auto expected = render("--jobs 1 --threads 1");
  EXPECT_NE(expected.front(), expected.back());
  for (const char* options : {"--jobs 1 --threads 3", "--jobs 2 --threads 5", "--jobs 3 --threads 1"})
    EXPECT_EQ(expected, render(options)) << options;
}

TEST_F(Render, EndsAtTheFirstBadFrameAndLeavesNoPartOfAVideo) {
  for (int i = 1; i <= 6; ++i)
    for (const char* name : {"good.", "cut.", "size."}) WriteRandomPng(folder / (name + std::to_string(i) + ".png"), i);
  media::WriteFile(folder / "cut.3.png", "text");
  WritePng(folder / "size.3.png", media::BlankFrame(8, 8, false));
  const std::vector<std::string> names = folder.Names();
  const struct {
    int status;
    const char *input, *message;
  } cases[] = {{3, "cut.%d.png", "cut.3.png"},
               {4, "size.%d.png", "frame 3 is 8 x 8 pixels"},
               {5, "good.%d.png --set 'Mode=Fail Late'", "ran out of memory"}};
  for (const auto& [status, input, message] : cases)
    for (const char* jobs : {" --jobs 1", " --jobs 3"}) {
      const std::string render = std::string("render ") + input + jobs + kFake;
      ExpectFailure(status, render + " -o out.mkv", message);
      EXPECT_EQ(names, folder.Names());
      if (status == 4) continue;
      const TemporaryFolder pictures;
      ExpectFailure(status, render + " -o " + (pictures / "%d.png"), message);
      EXPECT_THAT(pictures.Names(), ElementsAre("1.png", "2.png"));
    }
}

TEST_F(ProgramTest, LeavesNothingBehindWhenInterrupted) {
  media::MakeClip(folder / "in.mp4");
  for (const int signal : {SIGINT, SIGTERM})
    for (const std::string output : {"out.mkv --frames 1-10", "out.png --frames 1"}) {
      Program program(folder, "render in.mp4 --jobs 3 --set 'Mode=Wait For Cancel' -o " + output + kFake);
      program.AwaitMessage("rendering\n");
      program.Send(signal);
      const Outcome outcome = program.Wait();
      EXPECT_EQ(128 + signal, outcome.status);
      EXPECT_THAT(outcome.err, testing::MatchesRegex("(rendering\n)+quentara: interrupted; nothing unfinished .*\n"));
      EXPECT_THAT(folder.Names(), ElementsAre("in.mp4"));
    }
}

TEST_F(ProgramTest, EndsAtTheSecondSignal) {
  WriteRandomPng(folder / "in.png");
  Program program(folder, "render in.png -o out.png --set 'Mode=Ignore Cancel'" + kFake);
  program.AwaitMessage("rendering\n");
  program.Send(SIGINT);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  program.Send(SIGINT);
  EXPECT_EQ(-SIGINT, program.Wait().status);
}

TEST_F(ProgramTest, TellsItsVersionAndTheEffects) {
  EXPECT_THAT(Succeed("--version").out, testing::MatchesRegex("quentara [0-9.]+\nVelmor! [0-9.]+ .*\n"));
}

TEST_F(Params, PrintsTheTableAsJson) {
  using nlohmann::json;
  const json rows = json::parse(Succeed("params --json --set 7=14 --set 'Blend With Original=12.5%'").out);
  ASSERT_EQ(159u, rows.size());
  EXPECT_EQ(json::parse(R"({"index": 27, "id": 7, "group": "Flat Shaded", "name": "Flatness", "kind": "slider",
                            "value": 14, "default": 10, "valid": [0, 100], "slider": [0, 50], "enabled": true})"),
            rows[26]);
  EXPECT_EQ(12.5, rows[158]["value"]);
  EXPECT_EQ("#ffffff", rows[155]["default"]);
  EXPECT_EQ(117u, json::parse(Succeed("params --json --host-version 12.11").out).size());
}

TEST_F(Params, ShowsWhichRowsAreGreyedAndWhichChanged) {
  EXPECT_THAT(Succeed("params --set Tone=off" + kFake).out, ContainsRegex("Level   [^\n]*\\(greyed\\)\n"));
  EXPECT_THAT(Succeed("params --set Tone=on --set Level=9" + kFake).out,
              testing::AllOf(ContainsRegex("Level  +\\*9 +7 "), testing::Not(testing::HasSubstr("greyed"))));
}

}  // namespace
}  // namespace quentara
