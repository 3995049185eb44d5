#include "cli/program.h"

#include <gmock/gmock.h>
#include <signal.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/clip_maker.h"
#include "cli/media_support.h"

namespace quentara {
namespace {

using media::Frame;
using testing::ContainsRegex;
using testing::ElementsAre;

const Arguments kNothing = {"--set", "Roto=No Roto", "--set", "Main Blur/Type=None", "--set", "Comic Outlines=off"};

Arguments WithFake(const std::string& mode) {
  return {"--effect", FAKE_EFFECT, "--set", "Mode=" + mode};
}

void WriteRandomPng(const std::string& path, unsigned seed = 1, bool deep = false) {
  std::mt19937 rng(seed);
  media::WritePng(path, media::RandomFrame(23, 17, deep, false, rng));
}

Frame ReadPicture(const std::string& path) {
  return *media::OpenInput(path)->Next();
}

TEST(Render, WithEverythingOffGivesBackItsInputInTheEffectsEightBits) {
  const TemporaryFolder folder;
  for (const bool deep : {false, true}) {
    WriteRandomPng(folder / "in.png", 1, deep);
    Succeed(Arguments{"render", folder / "in.png", "-y", "-o", folder / "out.png"} + kNothing);
    Frame expected = ReadPicture(folder / "in.png");
    ASSERT_EQ(deep, expected.deep);
    for (int i = 0; deep && i < expected.width * expected.height * 4; ++i)
      if (i % 4 != 0) expected.Deep(0)[i] = static_cast<std::uint16_t>((expected.Deep(0)[i] * 255 >> 15) * 32768 / 255);
    EXPECT_EQ(expected.pixels, ReadPicture(folder / "out.png").pixels);
  }
}

TEST(Render, KeepsTheNumbersOfASequenceAndReportsItsGaps) {
  const TemporaryFolder folder;
  for (const int number : {3, 4, 6}) WriteRandomPng(folder / ("in." + std::to_string(number) + ".png"), number);
  const Outcome outcome =
      Succeed(Arguments{"render", folder / "in.#.png", "-o", folder / "out.%02d.png"} + WithFake("Invert"));
  EXPECT_THAT(outcome.err, ContainsRegex("gaps: 5\n(.*\n)*3 frames in "));
  EXPECT_THAT(folder.Names(),
              ElementsAre("in.3.png", "in.4.png", "in.6.png", "out.03.png", "out.04.png", "out.06.png"));
  Frame expected = ReadPicture(folder / "in.6.png");
  for (std::uint8_t& sample : expected.pixels) sample = static_cast<std::uint8_t>(~sample);
  EXPECT_EQ(expected.pixels, ReadPicture(folder / "out.06.png").pixels);
}

TEST(Sheet, ShowsEveryStyleOfOneFrameAndNeverOverwritesUnasked) {
  const TemporaryFolder folder;
  WriteRandomPng(folder / "in.png");
  const Arguments sheet = {"sheet", folder / "in.png", "-o", folder / "sheet.png", "--columns", "30"};
  Succeed(sheet);
  // The frame and nine choices of style in a row of 23 pixels each, and at least seven outlines below.
  const Frame picture = ReadPicture(folder / "sheet.png");
  EXPECT_GE(picture.width, 10 * 23);
  EXPECT_GE(picture.height, 2 * 17);
  ExpectFailure(4, sheet, "exists already");
  ExpectFailure(5, sheet + Arguments{"-y", "-q"} + WithFake("Fail"), "No paint left");
  EXPECT_EQ(picture.pixels, ReadPicture(folder / "sheet.png").pixels);
}

TEST(Sheet, ShowsAFrameOfAVideoUprightWithSquarePixels) {
  const TemporaryFolder folder;
  media::ClipOptions clip;  // 96 x 64, turned to 64 x 96, its pixels half as wide as high
  clip.rotation = 90;
  clip.setUp = [](AVCodecContext& encoder) { encoder.sample_aspect_ratio = {2, 1}; };
  media::MakeClip(folder / "in.mov", clip);
  Succeed(Arguments{"sheet", folder / "in.mov", "-o", folder / "out.png", "--frame", "3", "--columns", "1"} +
          WithFake("Invert"));
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

TEST(Render, ReducesAPreviewWithoutLettingTransparentPixelsShow) {
  const TemporaryFolder folder;
  Frame frame = media::BlankFrame(4, 4, false);
  const std::uint8_t samples[2][16] = {{255, 10, 20, 30, 255, 10, 20, 30, 255, 0, 0, 250, 0, 250, 0, 0},
                                       {255, 30, 40, 50, 255, 30, 40, 50, 255, 0, 0, 250, 0, 250, 0, 0}};
  for (int y = 0; y < 4; ++y) std::copy(std::begin(samples[y % 2]), std::end(samples[y % 2]), frame.Bytes(y));
  media::WritePng(folder / "in.png", frame);
  Succeed(Arguments{"render", folder / "in.png", "-o", folder / "out.png", "--preview", "1/2"} + kNothing);
  const Frame reduced = ReadPicture(folder / "out.png");
  ASSERT_EQ(std::pair(2, 2), std::pair(reduced.width, reduced.height));
  const int expected[] = {255, 20, 30, 40, 128, 0, 0, 250};
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(expected[i % 8], reduced.pixels[i], 1) << i;
}

TEST(Render, KeepsTheFramesAndTheRateOfAVideoInAPreview) {
  const TemporaryFolder folder;
  media::MakeClip(folder / "in.mp4");
  const Outcome outcome = Succeed(
      Arguments{"render", folder / "in.mp4", "--quiet", "-o", folder / "out.mkv", "--preview", "1/2"} + kNothing);
  EXPECT_EQ("", outcome.err);
  const media::Clip clip = media::ReadClip(folder / "out.mkv");
  EXPECT_EQ(std::pair(std::size_t{10}, 48), std::pair(clip.times.size(), clip.stream->codecpar->width));
  EXPECT_NEAR(25, av_q2d(clip.stream->avg_frame_rate), 1e-9);
}

TEST(Program, TellsMistakesInOneLineAndChangesNothing) {
  const TemporaryFolder folder;
  WriteRandomPng(folder / "in.png");
  WriteRandomPng(folder / "old.png", 7);
  const std::vector<std::uint8_t> old = media::ReadFile(folder / "old.png");
  media::WriteFile(folder / "cut.png", std::vector<std::uint8_t>(old.begin(), old.begin() + 99));
  media::WriteFile(folder / "seq.1.png", old);
  media::WriteFile(folder / "fonts.conf", std::string("<fontconfig/>"));
  const std::vector<std::string> names = folder.Names();

  const std::string in = folder / "in.png", out = folder / "out.png";
  const auto render = [](const std::string& from, const std::string& to, const Arguments& more) {
    return Arguments{"render", from, "-o", to} + more;
  };
  const auto sheet = [&](const std::string& to, const Arguments& more) {
    return Arguments{"sheet", in, "-o", to} + more;
  };
  const auto setUpWith = [](const std::string& fault) {
    return Arguments{"params", "--effect", FAKE_EFFECT, "--host-version", "99." + fault};
  };
  const struct {
    int status;
    Arguments arguments;
    const char* message;
  } cases[] = {
      {2, {}, "say what to do: render"},
      {2, {"paint"}, "no command \"paint\""},
      {2, {"render", in}, "--output is required"},
      {2, {"render", "-o", out}, "input is required"},
      {2, render(in, out, {"--bogus"}), "--bogus"},
      {2, render(in, out, {"--threads", "0"}), "1 to 256"},
      {2, render(in, out, {"--frames", "5-"}), "5-"},
      {2, render(in, out, {"--preview", "3/2"}), "--preview takes a fraction"},
      {2, render(in, out, {"--fps", "0"}), "--fps takes frames per second"},
      {2, render(in, out, {"--preview", "1/2", "--downsample", "1/2"}), "excludes"},
      {2, render(in, out, {"--host-version", "new"}), "--host-version takes a version"},
      {2, render(in, out, {"--set", "Flatnes=3"}), "did you mean \"Flatness\""},
      {2, render(in, out, {"--set", "Flat Shaded/Flatness=101"}), "0 to 100, not \"101\""},
      {3, render(folder / "none.png", out, kNothing), "none.png"},
      {3, render(folder / "cut.png", out, kNothing), "cut.png"},
      {3, render(folder / "seq.%d.png", folder / "out.%d.png", Arguments{"--frames", "1-2"} + kNothing), "missing.*2"},
      {4, render(in, folder / "old.png", kNothing), "old.png.*exists"},
      {4, render(in, in, Arguments{"-y"} + kNothing), "input itself"},
      {4, render(in, folder / "none/out.png", kNothing), "none/out.png"},
      {4, render(in, folder / "out.xyz", kNothing), "out.xyz"},
      {5, render(in, out, {"--effect", NO_EFFECT}), "is not an effect; it has no PluginEntry"},
      {5, render(in, out, {"--effect", in}), "in.png is not an effect; it cannot be loaded"},
      {5, render(in, out, {"--effect", "/nowhere.so"}), "there is no effect at /nowhere.so"},
      {5, render(in, out, WithFake("Fail")), "the effect failed: No paint left. \\(error 512\\)"},
      {5, render(in, folder / "old.png", Arguments{"-y"} + WithFake("Fail Silently")), "ran out of memory"},
      {5, render(in, out, WithFake("Grow")), "the effect asks for a frame of another size"},
      {5, setUpWith("1"), "the effect ran out of memory \\(error 4\\)"},
      {5, setUpWith("2"), "the effect defined 8 parameters but says that it has 9"},
      {5, setUpWith("3"), "the effect failed with error 514"},
      {5, setUpWith("4"), "the effect failed with error 516"},
      {2, sheet(out, {"--tile", "5"}), "--tile"},
      {2, sheet(out, {"--columns", "0"}), "--columns"},
      {3, sheet(out, {"--frame", "2"}), "in.png"},
      {4, sheet(folder / "out.mp4", {}), "out.mp4: a contact sheet is a picture"},
      {4, sheet(in, {"-y"}), "is the input itself"},
  };
  const auto expectFailure = [&](int status, const Arguments& arguments, const char* message) {
    ExpectFailure(status, arguments, message);
    EXPECT_EQ(names, folder.Names()) << testing::PrintToString(arguments);
    EXPECT_EQ(old, media::ReadFile(folder / "old.png"));
  };
  for (const auto& [status, arguments, message] : cases) expectFailure(status, arguments, message);
  setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
  expectFailure(4, sheet(out, {}), "there is no font for the labels");
  unsetenv("FONTCONFIG_FILE");
}

TEST(Render, WritesTheSameBytesHoweverManyFramesAreRenderedAtOnce) {
  const TemporaryFolder folder;
  media::MakeClip(folder / "in.mp4");
  const auto render = [&](const char* jobs, const char* threads) {
    Succeed({"render", folder / "in.mp4", "-y", "-o", folder / "out.%d.png", "--jobs", jobs, "--threads", threads});
    std::vector<std::vector<std::uint8_t>> files;
    for (int i = 1; i <= 10; ++i) files.push_back(media::ReadFile(folder / ("out." + std::to_string(i) + ".png")));
    return files;
  };
  const auto expected = render("1", "1");
  EXPECT_NE(expected.front(), expected.back());
  for (const auto& [jobs, threads] : {std::pair{"1", "3"}, {"2", "5"}, {"3", "1"}})
    EXPECT_EQ(expected, render(jobs, threads)) << jobs << " jobs";
}

TEST(Render, EndsAtTheFirstBadFrameAndLeavesNoPartOfAVideo) {
  const TemporaryFolder folder;
  for (int i = 1; i <= 6; ++i)
    for (const char* name : {"good.", "cut.", "size."}) WriteRandomPng(folder / (name + std::to_string(i) + ".png"), i);
  media::WriteFile(folder / "cut.3.png", std::string("\x89PNG"));
  WritePng(folder / "size.3.png", media::BlankFrame(8, 8, false));
  const std::vector<std::string> names = folder.Names();
  const struct {
    int status;
    const char* input;
    const char* mode;
    const char* message;
  } cases[] = {{3, "cut.%d.png", "Invert", "cut.3.png"},
               {4, "size.%d.png", "Invert", "frame 3 is 8 x 8 pixels"},
               {5, "good.%d.png", "Fail Late", "ran out of memory"}};
  for (const auto& [status, input, mode, message] : cases)
    for (const char* jobs : {"1", "3"}) {
      const Arguments render = Arguments{"render", folder / input, "--jobs", jobs} + WithFake(mode);
      ExpectFailure(status, render + Arguments{"-o", folder / "out.mkv"}, message);
      EXPECT_EQ(names, folder.Names());
      if (status == 4) continue;
      const TemporaryFolder pictures;
      ExpectFailure(status, render + Arguments{"-o", pictures / "%d.png"}, message);
      EXPECT_THAT(pictures.Names(), ElementsAre("1.png", "2.png"));
    }
}

TEST(Program, LeavesNothingBehindWhenInterrupted) {
  const TemporaryFolder folder;
  media::MakeClip(folder / "in.mp4");
  for (const int signal : {SIGINT, SIGTERM})
    for (const auto& [output, frames] : {std::pair{"out.mkv", "1-10"}, {"out.png", "1"}}) {
      Program program(Arguments{"render", folder / "in.mp4", "--jobs", "3", "--frames", frames, "-o", folder / output} +
                      WithFake("Wait For Cancel"));
      program.AwaitMessage("rendering\n");
      program.Send(signal);
      const Outcome outcome = program.Wait();
      EXPECT_EQ(128 + signal, outcome.status);
      EXPECT_THAT(outcome.err, testing::MatchesRegex("(rendering\n)+quentara: interrupted; nothing unfinished .*\n"));
      EXPECT_THAT(folder.Names(), ElementsAre("in.mp4"));
    }
}

TEST(Program, EndsAtTheSecondSignal) {
  const TemporaryFolder folder;
  WriteRandomPng(folder / "in.png");
  Program program(Arguments{"render", folder / "in.png", "-o", folder / "out.png"} + WithFake("Ignore Cancel"));
  program.AwaitMessage("rendering\n");
  program.Send(SIGINT);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  program.Send(SIGINT);
  EXPECT_EQ(-SIGINT, program.Wait().status);
}

TEST(Program, TellsItsVersionAndTheEffects) {
  EXPECT_THAT(Succeed({"--version"}).out, testing::MatchesRegex("quentara [0-9.]+\nVelmor! [0-9.]+ .*\n"));
}

TEST(Params, PrintsTheTableAsJson) {
  using nlohmann::json;
  const json rows =
      json::parse(Succeed({"params", "--json", "--set", "7=14", "--set", "Blend With Original=12.5%"}).out);
  ASSERT_EQ(159u, rows.size());
  EXPECT_EQ(json::parse(R"({"index": 27, "id": 7, "group": "Flat Shaded", "name": "Flatness", "kind": "slider",
                            "value": 14, "default": 10, "valid": [0, 100], "slider": [0, 50], "enabled": true})"),
            rows[26]);
  EXPECT_EQ(12.5, rows[158]["value"]);
  EXPECT_EQ("#ffffff", rows[155]["default"]);
  EXPECT_EQ(117u, json::parse(Succeed({"params", "--json", "--host-version", "12.11"}).out).size());
}

TEST(Params, ShowsWhichRowsAreGreyed) {
  const Arguments params = Arguments{"params"} + WithFake("Invert");
  EXPECT_THAT(Succeed(params + Arguments{"--set", "Tone=off"}).out, ContainsRegex("Level  .*\\(greyed\\)\n"));
  EXPECT_THAT(Succeed(params + Arguments{"--set", "Tone=on"}).out, testing::Not(testing::HasSubstr("greyed")));
}

}  // namespace
}  // namespace quentara
