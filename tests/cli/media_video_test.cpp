#include <gmock/gmock.h>

#include <cmath>

#include "cli/clip_maker.h"
#include "cli/media_support.h"

namespace quentara::media {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

struct Video : FolderTest {};

/// A sample of a frame on the scale of 0 to 255.
double Sample(const Frame& frame, int i) {
  return frame.deep ? frame.Deep(0)[i] * 255.0 / kDeepWhite : frame.Bytes(0)[i];
}

/// The greatest and the mean difference of all samples of two clips.
std::pair<double, double> Difference(const std::string& path, const std::string& otherPath) {
  const std::vector<Frame> frames = ReadAll(*OpenInput(path)), others = ReadAll(*OpenInput(otherPath));
  double most = 0, sum = 0, count = 0;
  for (std::size_t f = 0; f < frames.size(); ++f)
    for (int i = 0; i < frames[f].width * frames[f].height * 4; ++i, ++count) {
      const double difference = std::abs(Sample(frames[f], i) - Sample(others.at(f), i));
      most = std::max(most, difference);
      sum += difference;
    }
  return {most, sum / count};
}

TEST_F(Video, EveryContainerKeepsPicturesTimesAspectAndColours) {
  const auto setUp = [](AVCodecContext& encoder) {
    encoder.sample_aspect_ratio = {4, 3};
    encoder.color_primaries = AVCOL_PRI_SMPTE170M;
    encoder.color_trc = AVCOL_TRC_SMPTE170M;
    encoder.colorspace = AVCOL_SPC_SMPTE170M;
    encoder.color_range = AVCOL_RANGE_MPEG;
    encoder.chroma_sample_location = AVCHROMA_LOC_LEFT;
  };
  MakeClip(folder / "in.mp4", {setUp});
  const Clip in = ReadClip(folder / "in.mp4");
  const auto tags = [](const Clip& clip) {
    const AVCodecParameters& pictures = *clip.stream->codecpar;
    return std::tuple(pictures.color_primaries, pictures.color_trc, pictures.color_space, pictures.color_range,
                      pictures.chroma_location);
  };
  for (const std::string extension : {"mp4", "mov", "mkv", "avi", "webm"}) {
    SCOPED_TRACE(extension);
    const std::string path = folder / ("out." + extension);
    EXPECT_EQ(10, CopyMedia(folder / "in.mp4", path));
    const auto [most, mean] = Difference(folder / "in.mp4", path);
    EXPECT_LE(most, extension == "webm" ? 20 : 12);
    EXPECT_LE(mean, 1.0);
    const Clip out = ReadClip(path);
    ASSERT_EQ(10u, out.times.size());
    for (std::size_t i = 0; i < 10; ++i) EXPECT_NEAR(0.04 * i, out.times[i], 0.0005);
    EXPECT_NEAR(25, av_q2d(out.stream->avg_frame_rate), 0.01);
    EXPECT_NEAR(4.0 / 3, av_q2d(av_guess_sample_aspect_ratio(out.file.get(), out.file->streams[0], nullptr)), 0.001);
    EXPECT_EQ(tags(in), tags(out));
    // This container has no times for pictures that are coded out of order.
    EXPECT_TRUE(extension != "avi" || out.stream->codecpar->video_delay == 0);
  }
  EXPECT_THAT(folder.Names(), ElementsAre("in.mp4", "out.avi", "out.mkv", "out.mov", "out.mp4", "out.webm"));
}

TEST_F(Video, VaryingTimesStayInContainersThatHaveThem) {
  const auto setUp = [](AVCodecContext& encoder) { encoder.time_base = {1, 30000}; };
  MakeClip(folder / "in.mp4", {setUp, {0, 1000, 1001, 5000, 5600, 9000}});
  const Clip in = ReadClip(folder / "in.mp4");
  CopyMedia(folder / "in.mp4", folder / "out.mov");
  const Clip out = ReadClip(folder / "out.mov");
  EXPECT_EQ(in.times, out.times);
  EXPECT_NEAR(in.file->duration, out.file->duration, 1e-4 * AV_TIME_BASE);

  // Chosen frames that are not one run follow each other, each for its own time.
  CopyMedia(folder / "in.mp4", folder / "few.MOV", {}, ParseFrameRange("1,4-5"));
  EXPECT_THAT(ReadClip(folder / "few.MOV").times,
              ElementsAre(0, DoubleNear(1000 / 30000.0, 1e-9), DoubleNear(1600 / 30000.0, 1e-9)));
}

TEST_F(Video, AudioIsCopiedPacketByPacketAndCutToARange) {
  ClipOptions options;
  options.audio = {"eng", "dan"};
  options.times.clear();
  for (int i = 0; i < 50; ++i) options.times.push_back(512 * i);
  MakeClip(folder / "in.mp4", options);
  const Clip in = ReadClip(folder / "in.mp4");
  ASSERT_GT(in.audio[0].size(), 80u);
  for (const char* name : {"out.mp4", "out.mkv", "out.mov"}) {
    SCOPED_TRACE(name);
    CopyMedia(folder / "in.mp4", folder / name);
    const Clip out = ReadClip(folder / name);
    EXPECT_EQ(in.audio, out.audio);
    EXPECT_NEAR(in.audioStarts[1] - in.times[0], out.audioStarts[1] - out.times[0], 0.001);
    EXPECT_STREQ("dan", av_dict_get(out.file->streams[2]->metadata, "language", nullptr, 0)->value);
  }

  CopyMedia(folder / "in.mp4", folder / "cut.mkv", {}, ParseFrameRange("16-40"));
  const Clip cut = ReadClip(folder / "cut.mkv");
  EXPECT_EQ(25u, cut.times.size());
  const auto &whole = in.audio[0], &kept = cut.audio[0];
  ASSERT_NEAR(47, kept.size(), 1);  // one second in packets of 1024 samples at 48 kHz
  EXPECT_NE(whole.end(), std::search(whole.begin(), whole.end(), kept.begin(), kept.end()));
  EXPECT_NEAR(0.01, cut.audioStarts[0], 0.012);

  const auto input = OpenInput(folder / "in.mp4", ParseFrameRange("1-9x2"));
  EXPECT_THAT(OpenOutput(folder / "odd.mp4", *input)->Warnings(), ElementsAre(HasSubstr("audio")));
  EXPECT_THAT(MessageOf<OutputError>([&] { OpenOutput(folder / "out.webm", *OpenInput(folder / "in.mp4")); }),
              HasSubstr("audio (aac)"));
  CopyMedia(folder / "in.mp4", folder / "out.webm", {false, kDefaultFrameRate, /*audio=*/false});
  EXPECT_TRUE(ReadClip(folder / "out.webm").audio.empty());
}

TEST_F(Video, RotationIsKeptOrDone) {
  ClipOptions options;
  options.rotation = 90;
  options.setUp = [](AVCodecContext& encoder) { encoder.sample_aspect_ratio = {4, 3}; };
  MakeClip(folder / "in.mp4", options);
  CopyMedia(folder / "in.mp4", folder / "out.mov");
  const Clip kept = ReadClip(folder / "out.mov");
  EXPECT_EQ(std::pair(90, 96), std::pair(kept.rotation, kept.stream->codecpar->width));
  CopyMedia(folder / "in.mp4", folder / "out.mkv");
  const Clip turned = ReadClip(folder / "out.mkv");
  EXPECT_EQ(std::pair(0, 64), std::pair(turned.rotation, turned.stream->codecpar->width));
  EXPECT_NEAR(0.75, av_q2d(turned.stream->sample_aspect_ratio), 1e-6);
  // Turned clockwise, the left edge is on top: its green, read upwards, is the first row.
  const Frame lying = ReadPicture(folder / "out.mov"), upright = ReadPicture(folder / "out.mkv");
  for (int x = 0; x < 64; ++x) EXPECT_NEAR(lying.Bytes(63 - x)[2], upright.Bytes(0)[4 * x + 2], 8) << x;

  EXPECT_EQ(1, CopyMedia(folder / "in.mp4", folder / "still.png", {}, ParseFrameRange("3")));
  const FrameInfo still = OpenInput(folder / "still.png")->Info();
  EXPECT_EQ(std::tuple(64, 96, std::int64_t{3}, std::int64_t{4}),
            std::tuple(still.width, still.height, still.pixelAspect.numerator, still.pixelAspect.denominator));
}

TEST_F(Video, ColoursFollowTheFilesMatrixAndRange) {
  const struct {
    AVColorSpace matrix;
    AVColorRange range;
    int height;
    double kr, kb;
  } cases[] = {{AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 64, 0.2126, 0.0722},
               {AVCOL_SPC_SMPTE170M, AVCOL_RANGE_MPEG, 64, 0.299, 0.114},
               {AVCOL_SPC_BT709, AVCOL_RANGE_JPEG, 64, 0.2126, 0.0722},
               {AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, 64, 0.2627, 0.0593},
               {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 718, 0.299, 0.114},
               {AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 720, 0.2126, 0.0722}};
  for (const auto& [matrix, range, height, kr, kb] : cases)
    for (const bool deep : {false, true}) {
      SCOPED_TRACE(testing::Message() << matrix << " range " << range << " height " << height << " deep " << deep);
      const auto setUp = [&, m = matrix, r = range, h = height](AVCodecContext& encoder) {
        encoder.height = h;
        encoder.pix_fmt = deep ? AV_PIX_FMT_YUV444P10 : AV_PIX_FMT_YUV444P;
        encoder.colorspace = m;
        encoder.color_range = r;
      };
      const std::vector<FramePtr> pictures = MakeClip(folder / "in.mp4", {setUp, {0, 512}});
      const Frame frame = ReadPicture(folder / "in.mp4");
      ASSERT_EQ(deep, frame.deep);
      std::vector<double> planes[3];  // luma 0..1, chroma -0.5..0.5
      for (int plane = 0; plane < 3; ++plane)
        for (const double sample : Samples(*pictures[0], plane))
          if (range == AVCOL_RANGE_JPEG)
            planes[plane].push_back((sample - (plane ? 128 : 0)) / (deep ? 1023 / 4.0 : 255));
          else
            planes[plane].push_back(plane ? (sample - 128) / 224 : (sample - 16) / 219);
      double worst = 0;
      for (int i = 0; i < frame.width * frame.height; ++i) {
        const double y = planes[0][i], r = y + 2 * (1 - kr) * planes[2][i], b = y + 2 * (1 - kb) * planes[1][i];
        const double expected[] = {1, r, (y - kr * r - kb * b) / (1 - kr - kb), b};
        for (int c = 0; c < 4; ++c)
          worst = std::max(worst, std::abs(Sample(frame, 4 * i + c) - 255 * std::clamp(expected[c], 0.0, 1.0)));
      }
      EXPECT_LE(worst, deep ? 0.125 : 1);
    }
}

TEST_F(Video, DeepSourcesStayDeep) {
  // In MOV, 1920 x 1080 is a size for which the muxer has ideas of its own.
  for (const auto& [width, height] : {std::pair{96, 64}, {1920, 1080}}) {
    SCOPED_TRACE(width);
    const auto setUp = [w = width, h = height](AVCodecContext& encoder) {
      encoder.width = w;
      encoder.height = h;
      encoder.pix_fmt = AV_PIX_FMT_YUV422P10;
    };
    MakeClip(folder / "in.mkv", {setUp, {0, 512}});
    CopyMedia(folder / "in.mkv", folder / "out.mov", {/*overwrite=*/true});
    const Clip out = ReadClip(folder / "out.mov");
    EXPECT_EQ(AV_PIX_FMT_YUV422P10, out.stream->codecpar->format);
    EXPECT_EQ(MKTAG('a', 'v', 'c', '1'), out.stream->codecpar->codec_tag);
    EXPECT_LE(Difference(folder / "in.mkv", folder / "out.mov").second, 0.75);
  }
  CopyMedia(folder / "out.mov", folder / "f.%d.png", {}, ParseFrameRange("1"));
  EXPECT_TRUE(OpenInput(folder / "f.1.png")->Info().deep);
}

TEST_F(Video, AlphaIsKeptWhereAnEncoderHasIt) {
  Frame ramp = BlankFrame(64, 48, false);
  for (int i = 0; i < 64 * 48 * 4; ++i)
    ramp.pixels[i] = static_cast<std::uint8_t>(i % 4 == 0 ? i % 256 : 60 + 2 * (i / 256));
  for (const char* name : {"a1.png", "a2.png", "a3.png"}) WritePng(folder / name, ramp);
  for (const std::string name : {"out.mov", "out.mkv", "out.webm"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(3, CopyMedia(folder / "a%d.png", folder / name));
    EXPECT_TRUE(OpenInput(folder / name)->Info().hasAlpha);
    const Frame frame = ReadAll(*OpenInput(folder / name)).at(2);
    for (const int x : {0, 9, 30, 63})
      EXPECT_NEAR(4 * x, Sample(frame, 4 * (20 * 64 + x)), name == "out.mkv" ? 0 : 4) << x;
  }
  const auto input = OpenInput(folder / "a%d.png");
  EXPECT_THAT(OpenOutput(folder / "out.mp4", *input)->Warnings(), ElementsAre(HasSubstr("alpha")));
}

TEST_F(Video, RangesCountFramesFromOne) {
  MakeClip(folder / "in.mp4");
  const auto input = OpenInput(folder / "in.mp4", ParseFrameRange("2,5-9x2"));
  EXPECT_EQ(4, input->Info().frameCount);
  EXPECT_THAT(NumbersOf(*input), ElementsAre(2, 5, 7, 9));
  CopyMedia(folder / "in.mp4", folder / "in.mkv");  // which does not say how many frames it has
  for (const char* name : {"in.mp4", "in.mkv"})
    EXPECT_THAT(MessageOf<InputError>([&] { ReadAll(*OpenInput(folder / name, ParseFrameRange("5-12"))); }),
                HasSubstr("has 10 frames, but frame 12"));
  EXPECT_THROW(OpenInput(folder / "in.mp4", ParseFrameRange("0-3")), InputError);
}

TEST_F(Video, DamageIsToldWithTheLastFrameThatCanBeHad) {
  MakeClip(folder / "in.mp4");
  std::string content = ReadFile(folder / "in.mp4");
  std::fill_n(content.begin() + content.size() * 2 / 3, 300, '\xff');
  WriteFile(folder / "in.mp4", content);
  const auto input = OpenInput(folder / "in.mp4");
  int count = 0;
  const std::string message = MessageOf<InputError>([&] {
    for (; input->Next(); ++count) continue;
  });
  EXPECT_GT(count, 0);
  EXPECT_THAT(message, HasSubstr("cannot be read after frame " + std::to_string(count) + ":"));
}

TEST_F(Video, CutFilesAreErrors) {
  const auto setUp = [](AVCodecContext& encoder) { encoder.time_base = {1, 2}; };
  MakeClip(folder / "in.mkv", {setUp, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}});
  CopyMedia(folder / "in.mkv", folder / "in.mp4");
  for (const std::string name : {"in.mp4", "in.mkv"}) {
    const auto content = ReadFile(folder / name);
    for (const double share : {0.1, 0.5, 0.8}) {
      SCOPED_TRACE(testing::Message() << name << " " << share);
      WriteFile(folder / "cut", content.substr(0, static_cast<std::size_t>(share * content.size())));
      EXPECT_THAT(MessageOf<InputError>([&] { ReadAll(*OpenInput(folder / "cut")); }), HasSubstr("cut: "));
    }
  }
  WriteFile(folder / "text.mp4", "hi");
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "text.mp4"); }), HasSubstr("text.mp4: "));
  EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "none.mp4"); }), HasSubstr("No such file"));
}

}  // namespace
}  // namespace quentara::media
