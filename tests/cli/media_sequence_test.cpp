#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <stdexcept>

#include "cli/clip_maker.h"
#include "cli/media_support.h"
#include "media/sequence_pattern.h"

namespace quentara::media {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Sequence : FolderTest {};
struct OutputTest : FolderTest {};

/// Writes small pictures of noise under the names that the pattern gives the numbers.
std::vector<Frame> MakeSequence(const std::string& pattern, const std::vector<std::int64_t>& numbers, int width = 6) {
  std::vector<Frame> frames;
  for (const std::int64_t number : numbers) {
    frames.push_back(RandomFrame(width, 4, false, false, static_cast<unsigned>(number)));
    WritePng(SequencePattern::Parse(pattern)->Name(number), frames.back());
  }
  return frames;
}

TEST(FrameRange, ReadsSpansStepsAndLists) {
  const auto numbers = [](const char* text) {
    const FrameRange range = ParseFrameRange(text);
    std::vector<std::int64_t> all, walked;
    for (std::int64_t i = 0; i < 200; ++i)
      if (range.Contains(i)) all.push_back(i);
    for (auto number = range.From(0); number; number = range.From(*number + 1)) walked.push_back(*number);
    EXPECT_EQ(all, walked) << text;
    EXPECT_EQ(std::tuple(static_cast<std::int64_t>(all.size()), all.front(), all.back()),
              std::tuple(range.Count(), range.First(), range.Last()))
        << text;
    return all;
  };
  EXPECT_THAT(numbers("7"), ElementsAre(7));
  EXPECT_THAT(numbers("1-10x4"), ElementsAre(1, 5, 9));
  EXPECT_THAT(numbers("20-22,5,1,21-23"), ElementsAre(1, 5, 20, 21, 22, 23));
  EXPECT_TRUE(ParseFrameRange("3-5,6").IsContiguous());
  EXPECT_FALSE(ParseFrameRange("3-5x2").IsContiguous());
  for (const char* bad : {"", "a", "5-1", "1-", "-3", "1,,2", "1-5x0", "1-5x", "1 2", "1-5-9", "99999999999"})
    EXPECT_THROW(ParseFrameRange(bad), std::invalid_argument) << bad;
  EXPECT_EQ("3, 7-9, 12", DescribeNumbers({3, 7, 8, 9, 12}));
  EXPECT_EQ("1, 3 and 2 more", DescribeNumbers({1, 3, 5, 6}, 2));
}

TEST_F(Sequence, PatternsNameFilesAndFindThem) {
  for (const char* name :
       {"f.0001.png", "f.0012.png", "f.12345.png", "f.012.png", "f.00013.png", "f.-001.png", "f.png"})
    WriteFile(folder / name, {});
  const auto parse = [](const std::string& path) { return SequencePattern::Parse(path); };
  EXPECT_THAT(parse(folder / "f.%04d.png")->NumbersInFolder(), ElementsAre(1, 12, 12345));
  EXPECT_THAT(parse(folder / "f.[###].png")->NumbersInFolder(), ElementsAre(12, 12345));
  EXPECT_EQ("a#1_b.0042.png", parse("a#1_b.####.png")->Name(42));
  EXPECT_EQ("100000", parse("%03d")->Name(100000));
  EXPECT_EQ("5.png", parse("%d.png")->Name(5));
  EXPECT_FALSE(parse("####/f.png") || parse("100%.png"));
}

TEST_F(Sequence, KeepsNumbersAndReportsGaps) {
  const auto frames = MakeSequence(folder / "f.%04d.png", {8, 9, 10, 13, 20});
  const auto whole = OpenInput(folder / "f.####.png");
  EXPECT_EQ(Input::Kind::Sequence, whole->GetKind());
  EXPECT_EQ(5, whole->Info().frameCount);
  EXPECT_THAT(whole->Warnings(), ElementsAre(HasSubstr("11-12, 14-19")));
  EXPECT_THAT(NumbersOf(*whole), ElementsAre(8, 9, 10, 13, 20));
  const auto part = OpenInput(folder / "f.[####].png", ParseFrameRange("8-10x2"));
  EXPECT_THAT(part->Warnings(), IsEmpty());
  EXPECT_THAT(NumbersOf(*part), ElementsAre(8, 10));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "f.####.png", ParseFrameRange("7-13")); }),
              HasSubstr("missing: 7, 11-12"));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "g.####.png"); }), HasSubstr("no such files"));

  EXPECT_EQ(5, CopyMedia(folder / "f.####.png", folder / "out.###.tif"));
  const std::vector<Frame> copies = ReadAll(*OpenInput(folder / "out.###.tif"));
  for (std::size_t i = 0; i < frames.size(); ++i) EXPECT_EQ(frames[i].pixels, copies.at(i).pixels);
  EXPECT_EQ(20, copies.back().number);
}

TEST_F(Sequence, BecomesAVideoAtTheRateAskedFor) {
  MakeSequence(folder / "f.%d.png", {3, 4, 7}, 15);
  CopyMedia(folder / "f.%d.png", folder / "out.mov", {false, {30000, 1001}});
  CopyMedia(folder / "f.%d.png", folder / "out.mp4");
  const Clip clip = ReadClip(folder / "out.mp4");
  const AVCodecParameters& pictures = *clip.stream->codecpar;
  EXPECT_EQ(std::tuple(std::size_t{3}, 15, 4), std::tuple(clip.times.size(), pictures.width, pictures.height));
  EXPECT_NEAR(24, av_q2d(clip.stream->avg_frame_rate), 1e-6);
  EXPECT_EQ(std::pair(AVCOL_SPC_SMPTE170M, AVCOL_PRI_BT709), std::pair(pictures.color_space, pictures.color_primaries));
  const Rational rate = OpenInput(folder / "out.mov")->Info().frameRate;
  EXPECT_EQ(30000.0 / 1001, static_cast<double>(rate.numerator) / static_cast<double>(rate.denominator));

  MakeSequence(folder / "f.%d.png", {9}, 16);
  EXPECT_THAT(MessageOf<OutputError>([&] { CopyMedia(folder / "f.%d.png", folder / "mixed.mov"); }),
              HasSubstr("frame 9 is 16 x 4"));
}

TEST_F(OutputTest, RefusesWhatWouldLoseSomething) {
  MakeSequence(folder / "f.%d.png", {1, 2});
  MakeClip(folder / "in.mp4");
  std::filesystem::create_symlink(folder / "in.mp4", folder / "link.mp4");
  std::filesystem::create_hard_link(folder / "f.2.png", folder / "g.002.png");
  const std::vector<std::string> before = folder.Names();
  const OutputOptions overwrite{true};
  const struct {
    const char *from, *to, *message;
    OutputOptions options;
  } cases[] = {{"in.mp4", "in.mp4", "in.mp4: is the input itself", overwrite},
               {"in.mp4", "link.mp4", "is the input itself", overwrite},
               {"link.mp4", "in.mp4", "is the input itself", overwrite},
               {"f.%d.png", "g.%03d.png", "g.002.png: is the input itself", overwrite},
               {"in.mp4", "f.%d.png", "f.1.png: exists already", {}},
               {"f.1.png", "in.mp4", "single picture", overwrite},
               {"f.%d.png", "in.mp4", "exists already", {}},
               {"in.mp4", "none/out.mp4", "none/out.mp4: cannot be written: No such file", {}},
               {"in.mp4", "none/out.%d.png", "No such file", {}},
               {"in.mp4", "one.png", "several frames", {}},
               {"f.%d.png", "one.png", "several frames", {}},
               {"in.mp4", "out.gif", ".mp4", {}}};
  for (const auto& test : cases) {
    const auto input = OpenInput(folder / test.from);
    EXPECT_THAT(MessageOf<OutputError>([&] { OpenOutput(folder / test.to, *input, test.options); }),
                HasSubstr(test.message));
  }
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "."); }), HasSubstr("folder"));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "f.1.png", ParseFrameRange("2")); }), HasSubstr("single"));
  EXPECT_EQ(before, folder.Names());

  CopyMedia(folder / "f.1.png", folder / "f.2.png", overwrite);
  EXPECT_EQ(ReadFile(folder / "f.1.png"), ReadFile(folder / "f.2.png"));
}

TEST_F(OutputTest, LeavesNothingBehindWhenGivenUp) {
  MakeClip(folder / "in.mp4");
  const auto begin = [&](const char* name) {
    const auto input = OpenInput(folder / "in.mp4");
    auto output = OpenOutput(folder / name, *input);
    output->Write(*input->Next());
    EXPECT_LT(1u, folder.Names().size());
    return output;
  };
  for (const char* name : {"out.mp4", "out.mkv", "out.avi"}) begin(name);
  EXPECT_THAT(folder.Names(), ElementsAre("in.mp4"));
  // What turns up in the output's place meanwhile is not lost either.
  const auto output = begin("late.mp4");
  WriteFile(folder / "late.mp4", "!");
  EXPECT_THAT(MessageOf<OutputError>([&] { output->Finish(); }), HasSubstr("late.mp4"));
  EXPECT_EQ("!", ReadFile(folder / "late.mp4"));
  EXPECT_THROW(begin("late.%d.png")->Write(ReadPicture(folder / "in.mp4")), OutputError);
}

TEST_F(OutputTest, AFullDiskIsAnErrorWithoutLeftovers) {
  MakeClip(folder / "in.mp4", {[](AVCodecContext& encoder) { encoder.width = encoder.height = 256; }});
  const std::vector<std::string> before = folder.Names();
  // A limit on file sizes fails writes as a full disk does.
  rlimit old;
  getrlimit(RLIMIT_FSIZE, &old);
  signal(SIGXFSZ, SIG_IGN);
  const rlimit small{2000, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  for (const char* name : {"out.mp4", "out.mkv", "out.avi", "out.%d.png", "out.%d.tif"})
    EXPECT_THAT(MessageOf<OutputError>([&] { CopyMedia(folder / "in.mp4", folder / name); }),
                HasSubstr("File too large"))
        << name;
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(before, folder.Names());
}

}  // namespace
}  // namespace quentara::media
