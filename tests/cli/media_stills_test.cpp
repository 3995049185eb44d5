#include <gmock/gmock.h>
#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <stdexcept>

#include "cli/media_support.h"
#include "media/frame_origin.h"
#include "media/still.h"
#include "media/still_codecs.h"
#include "support/temporary_folder.h"

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
  Still still;
  still.width = width;
  still.height = height;
  still.channels = channels;
  still.deep = deep;
  still.Allocate();
  for (std::uint8_t& sample : still.samples) sample = static_cast<std::uint8_t>(rng());
  still.iccProfile = RgbProfile();
  still.resolution = {3937, 7874, true};
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
  Still still;
  still.width = still.height = 32;
  still.Allocate();
  // Columns of red and blue, which chroma subsampling would mix.
  for (std::size_t i = 0; i < 32 * 32; ++i) still.samples[3 * i + (i % 2 == 0 ? 0 : 2)] = 200;
  still.iccProfile = RgbProfile();
  still.resolution = {3937, 7874, true};
  const Still back = DecodeStill(StillFormat::Jpeg, EncodeStill(StillFormat::Jpeg, still));
  for (std::size_t i = 0; i < still.samples.size(); ++i) ASSERT_NEAR(still.samples[i], back.samples[i], 16) << i;
  EXPECT_EQ(still.iccProfile, back.iccProfile);
  EXPECT_NEAR(7874, back.resolution.y, 20);
}

TEST(Stills, EverySixteenBitSampleMeetsTheHostScaleAndAlphaComesBackExactly) {
  Still still;
  still.width = 256;
  still.height = 256;
  still.channels = 4;
  still.deep = true;
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

TEST(Stills, GreyPaletteAndOddTiffsBecomeRgb) {
  const TemporaryFolder folder;
  const auto makeTiff = [&](int bits, int channels, int photometric, int planar, bool tiled, int extra,
                            const std::vector<std::uint8_t>& rows, int orientation = 1) {
    TIFF* tiff = TIFFOpen((folder / "odd.tif").c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 2);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 2);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, planar);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
    const std::uint16_t extraKind = static_cast<std::uint16_t>(extra);
    if (extra >= 0) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extraKind);
    std::uint16_t red[256] = {0, 0xffff}, green[256] = {0, 0x8080}, blue[256] = {};
    if (photometric == PHOTOMETRIC_PALETTE) TIFFSetField(tiff, TIFFTAG_COLORMAP, red, green, blue);
    if (tiled) {
      TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
      TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
      std::vector<std::uint8_t> tile(TIFFTileSize(tiff));
      const std::size_t row = rows.size() / 2;
      std::memcpy(tile.data(), rows.data(), row);
      std::memcpy(tile.data() + tile.size() / 16, rows.data() + row, row);
      TIFFWriteTile(tiff, tile.data(), 0, 0, 0, 0);
    } else {
      const int planes = planar == PLANARCONFIG_SEPARATE ? channels : 1;
      const std::size_t row = rows.size() / planes / 2;
      for (int i = 0; i < 2 * planes; ++i) {
        std::vector<std::uint8_t> copy(rows.begin() + i * row, rows.begin() + (i + 1) * row);
        TIFFWriteScanline(tiff, copy.data(), i % 2, static_cast<std::uint16_t>(i / 2));
      }
    }
    TIFFClose(tiff);
    return DecodeTiff(ReadFile(folder / "odd.tif"));
  };
  using Bytes = std::vector<std::uint8_t>;
  const int contig = PLANARCONFIG_CONTIG;
  EXPECT_EQ((Bytes{9, 9, 9, 8, 8, 8, 7, 7, 7, 6, 6, 6}),
            makeTiff(8, 1, PHOTOMETRIC_MINISBLACK, contig, false, -1, {9, 8, 7, 6}).samples);
  EXPECT_EQ((Bytes{246, 246, 246, 1, 255, 255, 255, 2, 0, 0, 0, 3, 5, 5, 5, 4}),
            makeTiff(8, 2, PHOTOMETRIC_MINISWHITE, contig, true, EXTRASAMPLE_UNASSALPHA, {9, 1, 0, 2, 255, 3, 250, 4})
                .samples);
  EXPECT_EQ((Bytes{1, 5, 9, 2, 6, 10, 3, 7, 11, 4, 8, 12}),
            makeTiff(8, 3, PHOTOMETRIC_RGB, PLANARCONFIG_SEPARATE, false, -1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})
                .samples);
  EXPECT_EQ((Bytes{255, 128, 0, 0, 0, 0, 0, 0, 0, 255, 128, 0}),
            makeTiff(8, 1, PHOTOMETRIC_PALETTE, contig, false, -1, {1, 0, 0, 1}).samples);
  // Colours multiplied by their alpha come straight; where alpha is 0 they stay.
  EXPECT_EQ((Bytes{128, 255, 0, 100, 1, 2, 3, 0, 4, 5, 6, 255, 255, 255, 255, 9}),
            makeTiff(8, 4, PHOTOMETRIC_RGB, contig, false, EXTRASAMPLE_ASSOCALPHA,
                     {50, 100, 0, 100, 1, 2, 3, 0, 4, 5, 6, 255, 9, 9, 10, 9})
                .samples);
  EXPECT_EQ(6, makeTiff(8, 1, PHOTOMETRIC_MINISBLACK, contig, false, -1, {9, 8, 7, 6}, 6).orientation);
  EXPECT_THAT(
      MessageOf<std::runtime_error>([&] { makeTiff(8, 4, PHOTOMETRIC_SEPARATED, contig, false, -1, Bytes(16)); }),
      HasSubstr("CMYK"));
}

TEST(Stills, NetpbmOfAnyMaximumIsScaled) {
  const std::string text = "P5 # grey\n2 1\n# four levels\n3\n";
  std::vector<std::uint8_t> content(text.begin(), text.end());
  content.insert(content.end(), {1, 3});
  EXPECT_EQ((std::vector<std::uint8_t>{85, 85, 85, 255, 255, 255}), DecodePpm(content).samples);
}

TEST(Stills, OrientationTagsTurnThePicture) {
  // The letter F as it lies in the file for each orientation, and upright.
  const std::string upright =
      "XXX"
      "X.."
      "XX."
      "X..";
  const std::string lying[] = {upright,        "XXX..X.XX..X", "..X.XX..XXXX", "X..XX.X..XXX",
                               "XXXXX.X.X...", "X...X.X.XXXX", "...X.X.XXXXX", "XXXX.X.X...X"};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const std::string& file = lying[orientation - 1];
    const bool swaps = SwapsSides(orientation);
    const auto turned = TurnUpright({file.begin(), file.end()}, swaps ? 4 : 3, swaps ? 3 : 4, 1, orientation);
    EXPECT_EQ(upright, std::string(turned.begin(), turned.end())) << orientation;
  }
}

TEST(Stills, AJpegWithExifOrientationIsReadUpright) {
  const TemporaryFolder folder;
  Still still;
  still.width = 16;
  still.height = 8;
  still.Allocate();
  for (int i = 0; i < 8 * 8 * 3; ++i) still.samples[(i / 24) * 48 + i % 24] = 255;  // the left half is white
  std::vector<std::uint8_t> content = EncodeJpeg(still);
  const std::uint8_t exif[] = {0xff, 0xe1, 0, 34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                               0,    1,    1, 18, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0};
  content.insert(content.begin() + 2, std::begin(exif), std::end(exif));
  WriteFile(folder / "turned.jpg", content);
  const auto frame = OpenInput(folder / "turned.jpg")->Next();
  ASSERT_EQ(std::pair(8, 16), std::pair(frame->width, frame->height));
  EXPECT_GT(frame->Bytes(2)[5], 240);  // a quarter turn clockwise puts the left half on top
  EXPECT_LT(frame->Bytes(13)[5], 15);
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
      const std::string message = MessageOf<InputError>([&] { OpenInput(folder / "cut.picture"); });
      EXPECT_THAT(message, HasSubstr("cut.picture: "));
      EXPECT_EQ(std::string::npos, message.find('\n'));
    }
  }
  auto png = EncodePng(RandomStill(24, 24, 3, false, rng));
  png[png.size() / 2] ^= 1;
  EXPECT_THROW(DecodePng(png), std::runtime_error);
}

TEST(Stills, AlphaIsWrittenWhenTheSourceHadItOrItSaysSomething) {
  std::mt19937 rng(4);
  Frame frame = RandomFrame(3, 2, false, true, rng);
  EXPECT_EQ(3, ToStill(frame, StillFormat::Png).channels);
  frame.Bytes(1)[4] = 254;
  EXPECT_EQ(4, ToStill(frame, StillFormat::Tiff).channels);
  EXPECT_EQ(3, ToStill(frame, StillFormat::Jpeg).channels);
  Still opaque = RandomStill(1, 1, 4, false, rng);
  opaque.samples[3] = 255;
  EXPECT_EQ(4, ToStill(ToFrame(opaque), StillFormat::Png).channels);
}

}  // namespace
}  // namespace quentara::media
