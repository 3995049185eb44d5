#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>

#include "cli/clip_maker.h"
#include "cli/media_support.h"
#include "media/still_codecs.h"
#include "support/temporary_folder.h"

namespace quentara::media {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The greatest and the mean difference of all samples of two clips, in steps of the coarser one.
std::pair<int, double> Difference(const ClipFacts& a, const ClipFacts& b) {
  int most = 0;
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t f = 0; f < a.pictures.size(); ++f)
    for (std::size_t plane = 0; plane < a.pictures[f].size(); ++plane)
      for (std::size_t i = 0; i < a.pictures[f][plane].size(); ++i, ++count) {
        const int difference = std::abs(a.pictures[f][plane][i] - b.pictures.at(f).at(plane).at(i));
        most = std::max(most, difference);
        sum += difference;
      }
  return {most, sum / count};
}

TEST(Video, EveryContainerKeepsPicturesTimesAspectAndColours) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.aspect = {4, 3};
  options.primaries = AVCOL_PRI_SMPTE170M;
  options.transfer = AVCOL_TRC_SMPTE170M;
  options.matrix = AVCOL_SPC_SMPTE170M;
  options.range = AVCOL_RANGE_MPEG;
  options.chroma = AVCHROMA_LOC_LEFT;
  MakeClip(folder / "in.mp4", options);
  const ClipFacts in = ReadClip(folder / "in.mp4");
  for (const std::string extension : {"mp4", "mov", "mkv", "avi", "webm"}) {
    SCOPED_TRACE(extension);
    const std::string path = folder / ("out." + extension);
    EXPECT_EQ(10, CopyMedia(folder / "in.mp4", path));
    const ClipFacts out = ReadClip(path);
    EXPECT_EQ(std::pair(96, 64), std::pair(out.width, out.height));
    const auto [most, mean] = Difference(in, out);
    EXPECT_LE(most, extension == "webm" ? 12 : 6);
    EXPECT_LE(mean, 1.0);
    for (std::size_t i = 0; i < 10; ++i) EXPECT_NEAR(0.04 * i, Seconds(out).at(i), 0.0005);
    EXPECT_EQ(10u, out.times.size());
    EXPECT_NEAR(25, av_q2d(out.rate), 0.01);
    EXPECT_NEAR(4.0 / 3, av_q2d(out.aspect), 0.001);
    EXPECT_EQ(std::tuple(in.matrix, in.range, in.primaries, in.transfer),
              std::tuple(out.matrix, out.range, out.primaries, out.transfer));
    EXPECT_EQ(in.chroma, out.chroma);
  }
  EXPECT_THAT(folder.Names(), ElementsAre("in.mp4", "out.avi", "out.mkv", "out.mov", "out.mp4", "out.webm"));
}

TEST(Video, VaryingTimesStayInContainersThatHaveThem) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.times = {0, 1000, 1001, 5000, 5600, 9000};
  options.timeBase = {1, 30000};
  MakeClip(folder / "in.mp4", options);
  const ClipFacts in = ReadClip(folder / "in.mp4");
  CopyMedia(folder / "in.mp4", folder / "out.mov");
  const ClipFacts out = ReadClip(folder / "out.mov");
  EXPECT_EQ(Seconds(in), Seconds(out));
  EXPECT_EQ(0, out.times[0]);
  EXPECT_NEAR(in.duration, out.duration, 1e-4);

  // Chosen frames that are not one run follow each other, each for its own time.
  CopyMedia(folder / "in.mp4", folder / "few.mov", {}, ParseFrameRange("1,4-5"));
  const std::vector<double> few = Seconds(ReadClip(folder / "few.mov"));
  ASSERT_EQ(3u, few.size());
  EXPECT_NEAR(1000 / 30000.0, few[1], 1e-9);
  EXPECT_NEAR(1600 / 30000.0, few[2], 1e-9);
}

TEST(Video, AudioIsCopiedPacketByPacketAndCutToARange) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.audioStreams = 2;
  options.times.clear();
  for (int i = 0; i < 50; ++i) options.times.push_back(512 * i);
  MakeClip(folder / "in.mp4", options);
  const ClipFacts in = ReadClip(folder / "in.mp4");
  ASSERT_GT(in.audio[0].size(), 80u);
  for (const char* name : {"out.mp4", "out.mkv", "out.mov"}) {
    SCOPED_TRACE(name);
    CopyMedia(folder / "in.mp4", folder / name);
    const ClipFacts out = ReadClip(folder / name);
    EXPECT_EQ(in.audio, out.audio);
    const auto start = [](const ClipFacts& facts) {
      return facts.audioStarts[1] - facts.times[0] * av_q2d(facts.timeBase);
    };
    EXPECT_NEAR(start(in), start(out), 0.001);
    EXPECT_EQ(in.audioLanguages, out.audioLanguages);
  }

  CopyMedia(folder / "in.mp4", folder / "cut.mp4", {}, ParseFrameRange("26-50"));
  const ClipFacts cut = ReadClip(folder / "cut.mp4");
  EXPECT_EQ(25u, cut.times.size());
  ASSERT_NEAR(47, cut.audio[0].size(), 1);  // one second in packets of 1024 samples at 48 kHz
  EXPECT_TRUE(std::search(in.audio[0].begin(), in.audio[0].end(), cut.audio[0].begin(), cut.audio[0].end()) !=
              in.audio[0].end());
  EXPECT_NEAR(0.01, cut.audioStarts[0], 0.012);

  const auto input = OpenInput(folder / "in.mp4", ParseFrameRange("1-9x2"));
  EXPECT_THAT(OpenOutput(folder / "odd.mp4", *input)->Warnings(), ElementsAre(HasSubstr("audio")));
  EXPECT_THAT(MessageOf<OutputError>([&] { OpenOutput(folder / "out.webm", *OpenInput(folder / "in.mp4")); }),
              HasSubstr("audio (aac)"));
  OutputOptions silent;
  silent.audio = false;
  CopyMedia(folder / "in.mp4", folder / "out.webm", silent);
  EXPECT_TRUE(ReadClip(folder / "out.webm").audio.empty());
}

TEST(Video, RotationIsKeptOrDone) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.rotation = 90;
  options.aspect = {4, 3};
  MakeClip(folder / "in.mp4", options);
  ASSERT_EQ(90, ReadClip(folder / "in.mp4").rotation);
  CopyMedia(folder / "in.mp4", folder / "out.mov");
  const ClipFacts kept = ReadClip(folder / "out.mov");
  EXPECT_EQ(std::tuple(90, 96, 64), std::tuple(kept.rotation, kept.width, kept.height));
  CopyMedia(folder / "in.mp4", folder / "out.mkv");
  const ClipFacts turned = ReadClip(folder / "out.mkv");
  EXPECT_EQ(std::tuple(0, 64, 96), std::tuple(turned.rotation, turned.width, turned.height));
  EXPECT_NEAR(0.75, av_q2d(turned.aspect), 1e-6);
  // Turned clockwise, the left edge is on top: its luma, read upwards, is the first row.
  for (int x = 0; x < 64; ++x) EXPECT_NEAR(kept.pictures[0][0][(63 - x) * 96], turned.pictures[0][0][x], 4) << x;
  EXPECT_EQ(1, CopyMedia(folder / "in.mp4", folder / "still.png", {}, ParseFrameRange("3")));
  const FrameInfo still = OpenInput(folder / "still.png")->Info();
  EXPECT_EQ(std::pair(64, 96), std::pair(still.width, still.height));
  EXPECT_EQ((std::pair<std::int64_t, std::int64_t>(3, 4)),
            std::pair(still.pixelAspect.numerator, still.pixelAspect.denominator));
}

TEST(Video, ColoursFollowTheFilesMatrixAndRange) {
  const TemporaryFolder folder;
  struct Case {
    AVColorSpace matrix;
    AVColorRange range;
    int height;
    double kr, kb;
  };
  for (const Case& test : {Case{AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 64, 0.2126, 0.0722},
                           Case{AVCOL_SPC_SMPTE170M, AVCOL_RANGE_MPEG, 64, 0.299, 0.114},
                           Case{AVCOL_SPC_BT709, AVCOL_RANGE_JPEG, 64, 0.2126, 0.0722},
                           Case{AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, 64, 0.2627, 0.0593},
                           Case{AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 718, 0.299, 0.114},
                           Case{AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 720, 0.2126, 0.0722}})
    for (const AVPixelFormat format : {AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUV444P10}) {
      SCOPED_TRACE(testing::Message() << test.matrix << " range " << test.range << " height " << test.height << " "
                                      << format);
      ClipOptions options;
      options.height = test.height;
      options.format = format;
      options.matrix = test.matrix;
      options.range = test.range;
      options.times = {0, 512};
      MakeClip(folder / "in.mp4", options);
      const ClipFacts in = ReadClip(folder / "in.mp4");
      const Frame frame = *OpenInput(folder / "in.mp4")->Next();
      const bool deep = format == AV_PIX_FMT_YUV444P10, full = test.range == AVCOL_RANGE_JPEG;
      ASSERT_EQ(deep, frame.deep);
      const double unit = deep ? 4 : 1, white = deep ? kDeepWhite : 255, top = deep ? 1023 : 255;
      double worst = 0;
      for (int i = 0; i < 96 * test.height; ++i) {
        const auto sample = [&](int plane) { return in.pictures[0][plane][i]; };
        const double y = full ? sample(0) / top : (sample(0) / unit - 16) / 219;
        const double cb = full ? (sample(1) - 128 * unit) / top : (sample(1) / unit - 128) / 224;
        const double cr = full ? (sample(2) - 128 * unit) / top : (sample(2) / unit - 128) / 224;
        const double r = y + 2 * (1 - test.kr) * cr, b = y + 2 * (1 - test.kb) * cb;
        const double g = (y - test.kr * r - test.kb * b) / (1 - test.kr - test.kb);
        const double expected[] = {1, r, g, b};
        for (int c = 0; c < 4; ++c) {
          const double got = deep ? frame.Deep(0)[4 * i + c] : frame.Bytes(0)[4 * i + c];
          worst = std::max(worst, std::abs(got - std::clamp(expected[c], 0.0, 1.0) * white));
        }
      }
      EXPECT_LE(worst, deep ? 16 : 1.0);
    }
}

TEST(Video, DeepSourcesStayDeep) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.format = AV_PIX_FMT_YUV422P10;
  MakeClip(folder / "in.mkv", options);
  EXPECT_TRUE(OpenInput(folder / "in.mkv")->Info().deep);
  CopyMedia(folder / "in.mkv", folder / "f.%d.png");
  EXPECT_TRUE(OpenInput(folder / "f.7.png")->Info().deep);
  // In MOV, 1920 x 1080 is a size for which the muxer has ideas of its own.
  options.width = 1920;
  options.height = 1080;
  options.times = {0, 512};
  MakeClip(folder / "hd.mkv", options);
  for (const char* name : {"in.mkv", "hd.mkv"}) {
    const ClipFacts in = ReadClip(folder / name);
    CopyMedia(folder / name, folder / "out.mov");
    const ClipFacts out = ReadClip(folder / "out.mov");
    EXPECT_EQ(AV_PIX_FMT_YUV422P10, out.format);
    ASSERT_EQ(in.pictures.size(), out.pictures.size());
    EXPECT_LE(Difference(in, out).second, 3.0) << name;
    std::filesystem::remove(folder / "out.mov");
  }
}

TEST(Video, AlphaIsKeptWhereAnEncoderHasIt) {
  const TemporaryFolder folder;
  // Four frames of a smooth alpha ramp.
  for (int i = 1; i <= 4; ++i) {
    Frame frame = BlankFrame(64, 48, false);
    for (int y = 0; y < 48; ++y)
      for (int x = 0; x < 64; ++x)
        for (int c = 0; c < 4; ++c)
          frame.Bytes(y)[4 * x + c] = static_cast<std::uint8_t>(c == 0 ? 4 * x : 60 + 2 * y + i);
    WriteFile(folder / ("a" + std::to_string(i) + ".png"), EncodePng(ToStill(frame, StillFormat::Png)));
  }
  for (const char* name : {"out.mov", "out.mkv", "out.webm"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(4, CopyMedia(folder / "a%d.png", folder / name));
    const auto input = OpenInput(folder / name);
    EXPECT_TRUE(input->Info().hasAlpha);
    const std::vector<Frame> frames = ReadAll(*input);
    ASSERT_EQ(4u, frames.size());
    for (const int x : {0, 9, 30, 63}) {
      const int alpha = frames[2].deep ? (frames[2].Deep(20)[4 * x] * 255 + 16384) / 32768 : frames[2].Bytes(20)[4 * x];
      EXPECT_NEAR(4 * x, alpha, std::string(name) == "out.mkv" ? 0 : 4) << x;
    }
  }
  const auto input = OpenInput(folder / "a%d.png");
  EXPECT_THAT(OpenOutput(folder / "out.mp4", *input)->Warnings(), ElementsAre(HasSubstr("alpha")));
}

TEST(Video, RangesCountFramesFromOne) {
  const TemporaryFolder folder;
  MakeClip(folder / "in.mp4", {});
  const auto input = OpenInput(folder / "in.mp4", ParseFrameRange("2,5-9x2"));
  EXPECT_EQ(4, input->Info().frameCount);
  std::vector<std::int64_t> numbers;
  for (const Frame& frame : ReadAll(*input)) numbers.push_back(frame.number);
  EXPECT_THAT(numbers, ElementsAre(2, 5, 7, 9));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "in.mp4", ParseFrameRange("5-12")); }),
              testing::AllOf(HasSubstr("10 frames"), HasSubstr("frame 12")));
  EXPECT_THROW(OpenInput(folder / "in.mp4", ParseFrameRange("0-3")), InputError);
}

TEST(Video, CutFilesAreErrors) {
  const TemporaryFolder folder;
  ClipOptions options;
  options.timeBase = {1, 2};
  options.times = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  MakeClip(folder / "in.mkv", options);
  CopyMedia(folder / "in.mkv", folder / "in.mp4");
  for (const std::string name : {"in.mp4", "in.mkv"}) {
    const auto content = ReadFile(folder / name);
    for (const double share : {0.1, 0.5, 0.8}) {
      SCOPED_TRACE(testing::Message() << name << " " << share);
      WriteFile(folder / "cut",
                {content.begin(), content.begin() + static_cast<std::ptrdiff_t>(share * content.size())});
      const std::string message = MessageOf<InputError>([&] { ReadAll(*OpenInput(folder / "cut")); });
      EXPECT_THAT(message, HasSubstr("cut: "));
      EXPECT_EQ(std::string::npos, message.find('\n'));
    }
  }
  WriteFile(folder / "text.mp4", {'h', 'i'});
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "text.mp4"); }), HasSubstr("text.mp4: "));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "none.mp4"); }), HasSubstr("No such file"));
}

}  // namespace
}  // namespace quentara::media
