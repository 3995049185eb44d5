#include <gmock/gmock.h>
#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <stdexcept>

#include "cli/media_support.h"
#include "media/frame_origin.h"
#include "media/still.h"
#include "media/still_codecs.h"

namespace quentara::media {
namespace {

using testing::HasSubstr;

/// Just enough of a profile for the libraries to take it.
std::vector<std::uint8_t> RgbProfile() {
  std::vector<std::uint8_t> profile(512, 0);
  profile[2] = 2;  // 512 bytes in all
  profile[8] = 2;
  std::memcpy(profile.data() + 12, "mntrRGB XYZ ", 12);
  std::memcpy(profile.data() + 36, "acsp", 4);
  const std::uint8_t d50[] = {0, 0, 0xf6, 0xd6, 0, 1, 0, 0, 0, 0, 0xd3, 0x2d};
  std::memcpy(profile.data() + 68, d50, sizeof d50);
  std::mt19937 rng(5);
  std::generate(profile.begin() + 132, profile.end(), [&] { return static_cast<std::uint8_t>(rng()); });
  return profile;
}

Still RandomStill(int width, int height, int channels, bool deep, std::mt19937& rng) {
  Still still{width, height, channels, deep, {}, RgbProfile(), {3937, 7874, true}};
  still.Allocate();
  for (std::uint8_t& sample : still.samples) sample = static_cast<std::uint8_t>(rng());
  return still;
}

TEST(Stills, LosslessFormatsGiveBackEverySampleWithProfileAndResolution) {
  std::mt19937 rng(1);
  for (const StillFormat format : {StillFormat::Png, StillFormat::Tiff, StillFormat::Ppm})
    for (const bool deep : {false, true})
      for (const int channels : {3, 4}) {
        if (format == StillFormat::Ppm && channels == 4) continue;
        SCOPED_TRACE(testing::Message() << int(format) << " deep " << deep << " channels " << channels);
        const Still still = RandomStill(37, 21, channels, deep, rng);
        const auto content = EncodeStill(format, still);
        ASSERT_EQ(format, StillFormatOf(content));
        const Still back = DecodeStill(format, content);
        EXPECT_EQ(std::tuple(37, 21, channels, deep), std::tuple(back.width, back.height, back.channels, back.deep));
        EXPECT_EQ(still.samples, back.samples);
        if (format == StillFormat::Ppm) continue;
        EXPECT_EQ(still.iccProfile, back.iccProfile);
        EXPECT_NEAR(still.resolution.x, back.resolution.x, 1);
        EXPECT_NEAR(still.resolution.y, back.resolution.y, 1);
      }
}

TEST(Stills, JpegIsNearAndKeepsFineColour) {
  std::mt19937 rng(1);
  Still still = RandomStill(32, 32, 3, false, rng);
  // Columns of red and blue, which chroma subsampling would mix.
  for (std::size_t i = 0; i < still.samples.size(); ++i) still.samples[i] = i % 6 == 0 || i % 6 == 5 ? 200 : 0;
  const Still back = DecodeStill(StillFormat::Jpeg, EncodeStill(StillFormat::Jpeg, still));
  for (std::size_t i = 0; i < still.samples.size(); ++i) ASSERT_NEAR(still.samples[i], back.samples[i], 16) << i;
  EXPECT_EQ(still.iccProfile, back.iccProfile);
  EXPECT_NEAR(7874, back.resolution.y, 20);
}

TEST(Stills, EverySixteenBitSampleMeetsTheHostScaleAndAlphaComesBackExactly) {
  Still still{256, 256, 4, true, {}, {}, {}};
  still.Allocate();
  auto* samples = reinterpret_cast<std::uint16_t*>(still.samples.data());
  for (int i = 0; i < 65536 * 4; ++i) samples[i] = static_cast<std::uint16_t>(i / 4);
  Frame frame = ToFrame(still);
  for (int i = 0; i < 65536; ++i)
    for (int c = 0; c < 4; ++c) ASSERT_EQ(std::lround(i * 32768.0 / 65535.0), frame.Deep(0)[4 * i + c]) << i;

  frame.Deep(0)[4 * 1000] = 77;  // an alpha sample that the effect changed
  const Still back = ToStill(frame, StillFormat::Png);
  const auto* out = reinterpret_cast<const std::uint16_t*>(back.samples.data());
  for (int i = 0; i < 65536; ++i) {
    ASSERT_EQ(i == 1000 ? std::lround(77 * 65535.0 / 32768) : i, out[4 * i + 3]) << i;
    ASSERT_NEAR(i, out[4 * i], 1);
  }
  EXPECT_EQ(65535, out[4 * 65535]);
}

/// A TIFF of 2 x 2 pixels of 8 bits with the tags that are added, as it is read.
Still OddTiff(
    int photometric, int channels, std::vector<std::uint8_t> samples,
    const std::function<void(TIFF*)>& addTags = [](TIFF*) {}) {
  const TemporaryFolder folder;
  TIFF* tiff = TIFFOpen((folder / "odd.tif").c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 2);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 2);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  addTags(tiff);
  if (TIFFIsTiled(tiff)) {
    const std::size_t row = samples.size() / 2;
    samples.insert(samples.begin() + row, TIFFTileRowSize(tiff) - row, 0);
    samples.resize(TIFFTileSize(tiff));
    TIFFWriteEncodedTile(tiff, 0, samples.data(), TIFFTileSize(tiff));
  } else {
    for (unsigned i = 0; i < TIFFNumberOfStrips(tiff); ++i)
      TIFFWriteEncodedStrip(tiff, i, samples.data() + i * TIFFStripSize(tiff), TIFFStripSize(tiff));
  }
  TIFFClose(tiff);
  const std::string content = ReadFile(folder / "odd.tif");
  return DecodeTiff({content.begin(), content.end()});
}

TEST(Stills, GreyPaletteAndOddTiffsBecomeRgb) {
  using Bytes = std::vector<std::uint8_t>;
  const auto setAlpha = [](TIFF* tiff, std::uint16_t kind) { TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind); };
  const Still grey = OddTiff(PHOTOMETRIC_MINISBLACK, 1, {9, 8, 7, 6},
                             [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_RIGHTTOP); });
  EXPECT_EQ((Bytes{9, 9, 9, 8, 8, 8, 7, 7, 7, 6, 6, 6}), grey.samples);
  EXPECT_EQ(6, grey.orientation);
  EXPECT_EQ((Bytes{246, 246, 246, 1, 255, 255, 255, 2, 0, 0, 0, 3, 5, 5, 5, 4}),
            OddTiff(PHOTOMETRIC_MINISWHITE, 2, {9, 1, 0, 2, 255, 3, 250, 4}, [&](TIFF* tiff) {
              setAlpha(tiff, EXTRASAMPLE_UNASSALPHA);
              TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
              TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
            }).samples);
  EXPECT_EQ((Bytes{1, 5, 9, 2, 6, 10, 3, 7, 11, 4, 8, 12}),
            OddTiff(PHOTOMETRIC_RGB, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, [](TIFF* tiff) {
              TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
            }).samples);
  EXPECT_EQ((Bytes{255, 128, 0, 0, 0, 0, 0, 0, 0, 255, 128, 0}),
            OddTiff(PHOTOMETRIC_PALETTE, 1, {1, 0, 0, 1}, [](TIFF* tiff) {
              std::uint16_t red[256] = {0, 0xffff}, green[256] = {0, 0x8080}, blue[256] = {};
              TIFFSetField(tiff, TIFFTAG_COLORMAP, red, green, blue);
            }).samples);
  // Colours multiplied by their alpha come straight; where alpha is 0 they stay.
  EXPECT_EQ((Bytes{128, 255, 0, 100, 1, 2, 3, 0, 4, 5, 6, 255, 255, 255, 255, 9}),
            OddTiff(PHOTOMETRIC_RGB, 4, {50, 100, 0, 100, 1, 2, 3, 0, 4, 5, 6, 255, 9, 9, 10, 9}, [&](TIFF* tiff) {
              setAlpha(tiff, EXTRASAMPLE_ASSOCALPHA);
            }).samples);
  EXPECT_THAT(MessageOf<std::runtime_error>([] { OddTiff(PHOTOMETRIC_SEPARATED, 4, Bytes(16)); }), HasSubstr("CMYK"));
}

TEST(Stills, NetpbmOfAnyMaximumIsScaled) {
  const std::string text = "P5 # grey\n2 1\n# four levels\n3\n";
  std::vector<std::uint8_t> content(text.begin(), text.end());
  content.insert(content.end(), {1, 3});
  EXPECT_EQ((std::vector<std::uint8_t>{85, 85, 85, 255, 255, 255}), DecodePpm(content).samples);
}

TEST(Stills, OrientationTagsTurnThePicture) {
  // The letter F as it lies in the file for each orientation; the first is upright.
  const std::string lying[] = {"####..##.#..", "###..#.##..#", "..#.##..####", "#..##.#..###",
                               "#####.#.#...", "#...#.#.####", "...#.#.#####", "####.#.#...#"};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const bool swaps = orientation > 4;
    Still still{swaps ? 4 : 3, swaps ? 3 : 4, 3, false, {}, {}, {swaps ? 9.0 : 5.0, swaps ? 5.0 : 9.0}, orientation};
    for (const char c : lying[orientation - 1]) still.samples.insert(still.samples.end(), 3, c);
    const Frame frame = ToFrame(still);
    ASSERT_EQ(std::tuple(3, 4, 5.0), std::tuple(frame.width, frame.height, frame.origin->resolution.x));
    std::string turned;
    for (int i = 0; i < 12; ++i) turned += static_cast<char>(frame.Bytes(0)[4 * i + 1]);
    EXPECT_EQ(lying[0], turned) << orientation;
  }
}

TEST(Stills, AJpegsExifTellsItsOrientation) {
  std::mt19937 rng(1);
  std::vector<std::uint8_t> content = EncodeJpeg(RandomStill(16, 8, 3, false, rng));
  const std::uint8_t exif[] = {0xff, 0xe1, 0, 34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                               0,    1,    1, 18, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0};
  content.insert(content.begin() + 2, std::begin(exif), std::end(exif));
  EXPECT_EQ(6, DecodeJpeg(content).orientation);
}

TEST(Stills, CutOrDamagedFilesAreErrorsAtEveryLength) {
  std::mt19937 rng(3);
  const TemporaryFolder folder;
  for (const StillFormat format : {StillFormat::Png, StillFormat::Jpeg, StillFormat::Tiff, StillFormat::Ppm}) {
    Still still = RandomStill(24, 24, 3, format != StillFormat::Jpeg, rng);
    // In a TIFF these come last, and a picture without them is whole.
    still.iccProfile.clear();
    still.resolution = {};
    const auto content = EncodeStill(format, still);
    for (std::size_t length = 8; length < content.size() - 2; length += 1 + length / 7) {
      SCOPED_TRACE(testing::Message() << int(format) << " cut to " << length << " of " << content.size());
      WriteFile(folder / "cut.picture", {content.begin(), content.begin() + length});
      EXPECT_THAT(MessageOf<InputError>([&] { OpenInput(folder / "cut.picture"); }), HasSubstr("cut.picture: "));
    }
  }
  auto png = EncodePng(RandomStill(24, 24, 3, false, rng));
  png[png.size() / 2] ^= 1;
  EXPECT_THROW(DecodePng(png), std::runtime_error);
}

TEST(Stills, KeepTheirProfileAndResolutionAndAlphaWhenTheSourceHadItOrItSaysSomething) {
  std::mt19937 rng(4);
  Frame frame = RandomFrame(3, 2, false, true);
  EXPECT_EQ(3, ToStill(frame, StillFormat::Png).channels);
  frame.Bytes(1)[4] = 254;
  EXPECT_EQ(4, ToStill(frame, StillFormat::Tiff).channels);
  EXPECT_EQ(3, ToStill(frame, StillFormat::Jpeg).channels);
  Still opaque = RandomStill(1, 1, 4, false, rng);
  opaque.samples[3] = 255;
  const Still back = ToStill(ToFrame(opaque), StillFormat::Png);
  EXPECT_EQ(4, back.channels);
  EXPECT_EQ(std::pair(opaque.iccProfile, opaque.resolution.y), std::pair(back.iccProfile, back.resolution.y));
}

}  // namespace
}  // namespace quentara::media
