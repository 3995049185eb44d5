#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "media/still_codecs.h"

namespace quentara::media {
namespace {

constexpr double kInchesPerMetre = 1 / 0.0254;

/// A file in memory, and the first error that libtiff reports about it.
struct Job {
  std::vector<std::uint8_t> content;
  std::size_t position = 0;
  std::string message;
};

tmsize_t OnRead(thandle_t handle, void* out, tmsize_t size) {
  Job& job = *static_cast<Job*>(handle);
  const std::size_t left = job.content.size() - std::min(job.position, job.content.size());
  const std::size_t count = std::min<std::size_t>(size, left);
  if (count > 0) std::memcpy(out, job.content.data() + job.position, count);
  job.position += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t OnWrite(thandle_t handle, void* data, tmsize_t size) noexcept try {
  Job& job = *static_cast<Job*>(handle);
  job.content.resize(std::max(job.content.size(), job.position + size));
  std::memcpy(job.content.data() + job.position, data, size);
  job.position += size;
  return size;
} catch (...) {
  return -1;
}

toff_t OnSeek(thandle_t handle, toff_t offset, int from) {
  Job& job = *static_cast<Job*>(handle);
  const std::size_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? job.position : job.content.size();
  return job.position = base + offset;
}

toff_t OnSize(thandle_t handle) {
  return static_cast<Job*>(handle)->content.size();
}

int OnClose(thandle_t) {
  return 0;
}

int OnError(TIFF*, void* handle, const char*, const char* format, va_list arguments) {
  std::string& message = static_cast<Job*>(handle)->message;
  char text[256];
  std::vsnprintf(text, sizeof text, format, arguments);
  if (message.empty()) message = text;
  return 1;
}

int OnWarning(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

[[noreturn]] void Fail(const Job& job) {
  throw std::runtime_error(job.message.empty() ? "the TIFF file is damaged" : job.message);
}

using File = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

File Open(Job& job, const char* mode) {
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                 &TIFFOpenOptionsFree);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), OnError, &job);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), OnWarning, nullptr);
  File file(TIFFClientOpenExt("picture", mode, &job, OnRead, OnWrite, OnSeek, OnClose, OnSize, nullptr, nullptr,
                              options.get()),
            &TIFFClose);
  if (!file) Fail(job);
  return file;
}

template <class Value>
Value Tag(const File& file, std::uint32_t tag) {
  Value value{};
  TIFFGetFieldDefaulted(file.get(), tag, &value);
  return value;
}

/// How the samples lie in the file.
struct Layout {
  int bits, samplesPerPixel, photometric;
  bool planar, tiled;
  int colours = 0;        // 1 or 3, before the alpha sample
  bool hasAlpha = false;  // of the kind that comes right after the colours
  bool associated = false;
};

Layout ReadLayout(const File& file) {
  Layout layout{Tag<std::uint16_t>(file, TIFFTAG_BITSPERSAMPLE), Tag<std::uint16_t>(file, TIFFTAG_SAMPLESPERPIXEL),
                Tag<std::uint16_t>(file, TIFFTAG_PHOTOMETRIC),
                Tag<std::uint16_t>(file, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE, TIFFIsTiled(file.get()) != 0};
  layout.colours = layout.photometric == PHOTOMETRIC_RGB ? 3 : 1;
  layout.hasAlpha = layout.samplesPerPixel > layout.colours;
  std::uint16_t count = 0, *kinds = nullptr;
  if (TIFFGetField(file.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) && count > 0)
    layout.associated = kinds[0] == EXTRASAMPLE_ASSOCALPHA;
  return layout;
}

/// Every sample of the file, in the machine's byte order, as rows of interleaved pixels.
std::vector<std::uint8_t> ReadSamples(const File& file, const Job& job, const Layout& layout, int width, int height) {
  const std::size_t sampleBytes = layout.bits / 8, pixelBytes = sampleBytes * layout.samplesPerPixel;
  std::vector<std::uint8_t> samples(width * pixelBytes * height);
  const int planes = layout.planar ? layout.samplesPerPixel : 1;
  const std::size_t unit = pixelBytes / planes;  // bytes that lie together
  std::vector<std::uint8_t> block(
      std::max<tmsize_t>(layout.tiled ? TIFFTileSize(file.get()) : TIFFScanlineSize(file.get()), 1));
  const int blockWidth = layout.tiled ? static_cast<int>(Tag<std::uint32_t>(file, TIFFTAG_TILEWIDTH)) : width;
  const int blockHeight = layout.tiled ? static_cast<int>(Tag<std::uint32_t>(file, TIFFTAG_TILELENGTH)) : 1;
  if (block.size() < blockWidth * unit * blockHeight) Fail(job);

  for (int plane = 0; plane < planes; ++plane)
    for (int y = 0; y < height; y += blockHeight)
      for (int x = 0; x < width; x += blockWidth) {
        const bool read = layout.tiled ? TIFFReadTile(file.get(), block.data(), x, y, 0, plane) >= 0
                                       : TIFFReadScanline(file.get(), block.data(), y, plane) >= 0;
        if (!read) Fail(job);
        for (int row = 0; row < std::min(blockHeight, height - y); ++row)
          for (int column = 0; column < std::min(blockWidth, width - x); ++column)
            std::memcpy(samples.data() + ((y + row) * std::size_t(width) + x + column) * pixelBytes + plane * unit,
                        block.data() + (row * std::size_t(blockWidth) + column) * unit, unit);
      }
  return samples;
}

/// Takes colours and alpha out of the file's samples.
template <class Sample>
void TakeColours(const Layout& layout, const std::vector<std::uint8_t>& samples, Still& still) {
  constexpr unsigned kWhite = Sample(-1);
  const auto* in = reinterpret_cast<const Sample*>(samples.data());
  auto* out = reinterpret_cast<Sample*>(still.samples.data());
  const std::size_t pixels = static_cast<std::size_t>(still.width) * still.height;
  for (std::size_t i = 0; i < pixels; ++i, in += layout.samplesPerPixel, out += still.channels) {
    const unsigned alpha = layout.hasAlpha ? in[layout.colours] : kWhite;
    for (int c = 0; c < 3; ++c) {
      unsigned value = in[layout.colours == 3 ? c : 0];
      if (layout.photometric == PHOTOMETRIC_MINISWHITE) value = kWhite - value;
      if (layout.associated && alpha > 0)
        value =
            static_cast<unsigned>(std::min<std::uint64_t>((std::uint64_t{value} * kWhite + alpha / 2) / alpha, kWhite));
      out[c] = static_cast<Sample>(value);
    }
    if (layout.hasAlpha) out[3] = static_cast<Sample>(alpha);
  }
}

/// Palette, YCbCr and bilevel pictures, as libtiff's own conversion gives them.
void ReadConverted(const File& file, const Job& job, Still& still) {
  std::vector<std::uint32_t> raster(static_cast<std::size_t>(still.width) * still.height);
  // The still's orientation tells how it lies; libtiff would undo half of it.
  TIFFSetField(file.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  constexpr int kStopOnError = 1;
  if (!TIFFReadRGBAImageOriented(file.get(), still.width, still.height, raster.data(), ORIENTATION_TOPLEFT,
                                 kStopOnError))
    Fail(job);
  for (std::size_t i = 0; i < raster.size(); ++i) {
    still.samples[3 * i] = TIFFGetR(raster[i]);
    still.samples[3 * i + 1] = TIFFGetG(raster[i]);
    still.samples[3 * i + 2] = TIFFGetB(raster[i]);
  }
}

void ReadTags(const File& file, Still& still) {
  const int orientation = Tag<std::uint16_t>(file, TIFFTAG_ORIENTATION);
  still.orientation = orientation >= 1 && orientation <= 8 ? orientation : 1;
  float x = 0, y = 0;
  if (TIFFGetField(file.get(), TIFFTAG_XRESOLUTION, &x) && TIFFGetField(file.get(), TIFFTAG_YRESOLUTION, &y) && x > 0 &&
      y > 0) {
    const int unit = Tag<std::uint16_t>(file, TIFFTAG_RESOLUTIONUNIT);
    const double scale = unit == RESUNIT_INCH ? kInchesPerMetre : unit == RESUNIT_CENTIMETER ? 100 : 1;
    still.resolution = {x * scale, y * scale, unit != RESUNIT_NONE};
  }
  std::uint32_t size = 0;
  std::uint8_t* profile = nullptr;
  if (TIFFGetField(file.get(), TIFFTAG_ICCPROFILE, &size, &profile)) still.iccProfile.assign(profile, profile + size);
}

void WriteTags(const File& file, const Still& still) {
  TIFF* tiff = file.get();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, still.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, still.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, still.deep ? 16 : 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, still.channels);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  if (still.channels == 4) {
    const std::uint16_t kind = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
  }
  if (still.resolution.x > 0) {
    const double scale = still.resolution.absolute ? kInchesPerMetre : 1;
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, still.resolution.x / scale);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, still.resolution.y / scale);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, still.resolution.absolute ? RESUNIT_INCH : RESUNIT_NONE);
  }
  if (!still.iccProfile.empty())
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(still.iccProfile.size()),
                 still.iccProfile.data());
}

}  // namespace

Still DecodeTiff(const std::vector<std::uint8_t>& content) {
  Job job;
  job.content = content;
  const File file = Open(job, "rm");
  const Layout layout = ReadLayout(file);
  const int sampleFormat = Tag<std::uint16_t>(file, TIFFTAG_SAMPLEFORMAT);
  if (sampleFormat != SAMPLEFORMAT_UINT && sampleFormat != SAMPLEFORMAT_VOID)
    throw std::runtime_error("TIFF pictures with floating-point or signed samples are not read");
  const bool isGrey = layout.photometric == PHOTOMETRIC_MINISBLACK || layout.photometric == PHOTOMETRIC_MINISWHITE;
  const bool isDirect = (isGrey || (layout.photometric == PHOTOMETRIC_RGB && layout.samplesPerPixel >= 3)) &&
                        (layout.bits == 8 || layout.bits == 16);
  const bool isConvertible =
      ((isGrey || layout.photometric == PHOTOMETRIC_PALETTE) && layout.samplesPerPixel == 1 && layout.bits <= 8) ||
      (layout.photometric == PHOTOMETRIC_YCBCR && layout.bits == 8);
  if (layout.photometric == PHOTOMETRIC_SEPARATED)
    throw std::runtime_error("CMYK pictures are not read; convert it to RGB first");
  if (!isDirect && !isConvertible) throw std::runtime_error("this kind of TIFF picture is not read");

  Still still;
  still.width = static_cast<int>(Tag<std::uint32_t>(file, TIFFTAG_IMAGEWIDTH));
  still.height = static_cast<int>(Tag<std::uint32_t>(file, TIFFTAG_IMAGELENGTH));
  still.channels = isDirect && layout.hasAlpha ? 4 : 3;
  still.deep = isDirect && layout.bits == 16;
  still.Allocate();
  ReadTags(file, still);
  if (!isDirect) {
    ReadConverted(file, job, still);
    return still;
  }
  const std::vector<std::uint8_t> samples = ReadSamples(file, job, layout, still.width, still.height);
  if (still.deep)
    TakeColours<std::uint16_t>(layout, samples, still);
  else
    TakeColours<std::uint8_t>(layout, samples, still);
  return still;
}

std::vector<std::uint8_t> EncodeTiff(const Still& still) {
  Job job;
  {
    const File file = Open(job, "w");
    WriteTags(file, still);
    std::vector<std::uint8_t> row(still.RowBytes());  // libtiff changes the row that it is given
    for (int y = 0; y < still.height; ++y) {
      std::copy_n(still.samples.data() + y * still.RowBytes(), row.size(), row.data());
      if (TIFFWriteScanline(file.get(), row.data(), y, 0) < 0) Fail(job);
    }
    if (!TIFFFlush(file.get())) Fail(job);
  }
  return std::move(job.content);
}

}  // namespace quentara::media
