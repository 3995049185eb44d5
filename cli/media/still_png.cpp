#include <png.h>

#include <cmath>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "media/guarded_call.h"
#include "media/still_codecs.h"

namespace quentara::media {
namespace {

/// What the callbacks of libpng share: the error, the way out of it, and the file's bytes.
struct Job {
  std::jmp_buf escape;
  char message[256] = "";
  const std::vector<std::uint8_t>* input = nullptr;
  std::size_t position = 0;
  std::vector<std::uint8_t>* output = nullptr;
};

void OnError(png_structp png, png_const_charp text) {
  Job& job = *static_cast<Job*>(png_get_error_ptr(png));
  std::strncpy(job.message, text, sizeof job.message - 1);
  std::longjmp(job.escape, 1);
}

void OnWarning(png_structp, png_const_charp) {}

void OnRead(png_structp png, png_bytep out, std::size_t size) {
  Job& job = *static_cast<Job*>(png_get_io_ptr(png));
  if (size > job.input->size() - job.position) png_error(png, "the file is cut short");
  std::memcpy(out, job.input->data() + job.position, size);
  job.position += size;
}

bool Append(std::vector<std::uint8_t>& output, const std::uint8_t* data, std::size_t size) noexcept try {
  output.insert(output.end(), data, data + size);
  return true;
} catch (...) {
  return false;
}

void OnWrite(png_structp png, png_bytep data, std::size_t size) {
  if (!Append(*static_cast<Job*>(png_get_io_ptr(png))->output, data, size)) png_error(png, "out of memory");
}

struct Reader {
  explicit Reader(Job& job) : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &job, OnError, OnWarning)) {
    info = png ? png_create_info_struct(png) : nullptr;
    if (!info) throw std::bad_alloc();
    png_set_read_fn(png, &job, OnRead);
  }
  ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
  Reader(const Reader&) = delete;
  png_structp png;
  png_infop info = nullptr;
};

struct Writer {
  explicit Writer(Job& job) : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &job, OnError, OnWarning)) {
    info = png ? png_create_info_struct(png) : nullptr;
    if (!info) throw std::bad_alloc();
    png_set_write_fn(png, &job, OnWrite, nullptr);
    // A profile is handed on as it came, also one that libpng holds to be a faulty sRGB; one that cannot stand in an
    // RGB file (of a grey picture, say) is left out with a warning instead of failing the file.
    png_set_option(png, PNG_SKIP_sRGB_CHECK_PROFILE, PNG_OPTION_ON);
    png_set_benign_errors(png, 1);
  }
  ~Writer() { png_destroy_write_struct(&png, &info); }
  Writer(const Writer&) = delete;
  png_structp png;
  png_infop info = nullptr;
};

std::vector<png_bytep> Rows(const Still& still) {
  std::vector<png_bytep> rows(still.height);
  for (int y = 0; y < still.height; ++y) rows[y] = const_cast<png_bytep>(still.samples.data() + y * still.RowBytes());
  return rows;
}

void Check(const Job& job, bool done) {
  if (!done) throw std::runtime_error(job.message);
}

void ReadTags(const Reader& reader, Still& still) {
  png_charp name;
  int method, unit;
  png_bytep data;
  png_uint_32 size, x, y;
  if (png_get_iCCP(reader.png, reader.info, &name, &method, &data, &size)) still.iccProfile.assign(data, data + size);
  if (png_get_eXIf_1(reader.png, reader.info, &size, &data)) still.orientation = ExifOrientation(data, size);
  if (png_get_pHYs(reader.png, reader.info, &x, &y, &unit))
    still.resolution = {static_cast<double>(x), static_cast<double>(y), unit == PNG_RESOLUTION_METER};
}

}  // namespace

Still DecodePng(const std::vector<std::uint8_t>& content) {
  Job job;
  job.input = &content;
  const Reader reader(job);
  const png_structp png = reader.png;
  Check(job, RunGuarded(job.escape, [&] {
          png_read_info(png, reader.info);
          png_set_expand(png);
          png_set_gray_to_rgb(png);
          const std::uint16_t one = 1;
          if (*reinterpret_cast<const std::uint8_t*>(&one) == 1) png_set_swap(png);
          png_set_interlace_handling(png);
          png_read_update_info(png, reader.info);
        }));
  Still still;
  still.width = static_cast<int>(png_get_image_width(png, reader.info));
  still.height = static_cast<int>(png_get_image_height(png, reader.info));
  still.channels = png_get_channels(png, reader.info);
  still.deep = png_get_bit_depth(png, reader.info) == 16;
  still.Allocate();
  std::vector<png_bytep> rows = Rows(still);
  Check(job, RunGuarded(job.escape, [&] {
          png_read_image(png, rows.data());
          png_read_end(png, reader.info);
        }));
  ReadTags(reader, still);
  return still;
}

std::vector<std::uint8_t> EncodePng(const Still& still) {
  std::vector<std::uint8_t> content;
  Job job;
  job.output = &content;
  const Writer writer(job);
  const png_structp png = writer.png;
  std::vector<png_bytep> rows = Rows(still);
  // Frames are written five times as fast as with libpng's defaults, in files an eighth larger.
  constexpr int kCompressionLevel = 2, kFilter = PNG_FILTER_PAETH;
  Check(job, RunGuarded(job.escape, [&] {
          png_set_compression_level(png, kCompressionLevel);
          png_set_filter(png, PNG_FILTER_TYPE_BASE, kFilter);
          png_set_IHDR(png, writer.info, still.width, still.height, still.deep ? 16 : 8,
                       still.channels == 4 ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                       PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
          if (!still.iccProfile.empty())
            png_set_iCCP(png, writer.info, "ICC profile", PNG_COMPRESSION_TYPE_BASE, still.iccProfile.data(),
                         static_cast<png_uint_32>(still.iccProfile.size()));
          if (still.resolution.x > 0)
            png_set_pHYs(png, writer.info, static_cast<png_uint_32>(std::lround(still.resolution.x)),
                         static_cast<png_uint_32>(std::lround(still.resolution.y)),
                         still.resolution.absolute ? PNG_RESOLUTION_METER : PNG_RESOLUTION_UNKNOWN);
          png_write_info(png, writer.info);
          const std::uint16_t one = 1;
          if (*reinterpret_cast<const std::uint8_t*>(&one) == 1) png_set_swap(png);
          png_write_image(png, rows.data());
          png_write_end(png, nullptr);
        }));
  return content;
}

}  // namespace quentara::media
