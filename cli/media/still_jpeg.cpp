// jpeglib.h needs the types of stdio.
#include <cstdio>
// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>

#include "media/guarded_call.h"
#include "media/still_codecs.h"

namespace quentara::media {
namespace {

constexpr int kQuality = 95;
constexpr int kExifMarker = JPEG_APP0 + 1, kIccMarker = JPEG_APP0 + 2;
constexpr double kInchesPerMetre = 1 / 0.0254;

struct Job {
  jpeg_error_mgr manager;  // first, so that libjpeg's pointer to it is one to the whole
  std::jmp_buf escape;
  char message[JMSG_LENGTH_MAX] = "";
};

[[noreturn]] void OnError(j_common_ptr codec) {
  Job& job = *reinterpret_cast<Job*>(codec->err);
  job.manager.format_message(codec, job.message);
  std::longjmp(job.escape, 1);
}

/// libjpeg makes up what a damaged file lacks and only warns; a half-read picture is an error here.
void OnMessage(j_common_ptr codec, int level) {
  if (level >= 0) return;
  const int code = codec->err->msg_code;
  const bool harmless = code == JWRN_EXTRANEOUS_DATA || code == JWRN_JFIF_MAJOR || code == JWRN_ADOBE_XFORM ||
                        code == JWRN_BOGUS_PROGRESSION || code == JWRN_BOGUS_ICC;
  if (!harmless) OnError(codec);
}

void Prepare(Job& job) {
  jpeg_std_error(&job.manager);
  job.manager.error_exit = OnError;
  job.manager.emit_message = OnMessage;
}

struct Reader {
  explicit Reader(Job& job) {
    codec.err = &job.manager;
    if (!RunGuarded(job.escape, [&] { jpeg_create_decompress(&codec); })) throw std::bad_alloc();
  }
  ~Reader() { jpeg_destroy_decompress(&codec); }
  Reader(const Reader&) = delete;
  jpeg_decompress_struct codec{};
};

struct Writer {
  explicit Writer(Job& job) {
    codec.err = &job.manager;
    if (!RunGuarded(job.escape, [&] { jpeg_create_compress(&codec); })) throw std::bad_alloc();
  }
  ~Writer() {
    jpeg_destroy_compress(&codec);
    std::free(data);
  }
  Writer(const Writer&) = delete;
  jpeg_compress_struct codec{};
  unsigned char* data = nullptr;
  unsigned long size = 0;
};

void Check(const Job& job, bool done) {
  if (!done) throw std::runtime_error(job.message);
}

void ReadTags(Job& job, jpeg_decompress_struct& codec, Still& still) {
  constexpr char kExifName[] = "Exif\0";  // and the end of the literal: two zeros
  for (auto* marker = codec.marker_list; marker; marker = marker->next)
    if (marker->marker == kExifMarker && marker->data_length > 6 && std::memcmp(marker->data, kExifName, 6) == 0)
      still.orientation = ExifOrientation(marker->data + 6, marker->data_length - 6);
  if (codec.saw_JFIF_marker && codec.X_density > 0 && codec.Y_density > 0) {
    const double scale = codec.density_unit == 1 ? kInchesPerMetre : codec.density_unit == 2 ? 100 : 1;
    still.resolution = {codec.X_density * scale, codec.Y_density * scale, codec.density_unit != 0};
  }
  JOCTET* profile = nullptr;
  unsigned size = 0;
  bool found = false;
  if (RunGuarded(job.escape, [&] { found = jpeg_read_icc_profile(&codec, &profile, &size); }) && found) {
    const std::unique_ptr<JOCTET, decltype(&std::free)> owner(profile, &std::free);
    still.iccProfile.assign(profile, profile + size);
  }
}

}  // namespace

Still DecodeJpeg(const std::vector<std::uint8_t>& content) {
  Job job;
  Prepare(job);
  Reader reader(job);
  jpeg_decompress_struct& codec = reader.codec;
  Check(job, RunGuarded(job.escape, [&] {
          jpeg_mem_src(&codec, content.data(), content.size());
          jpeg_save_markers(&codec, kExifMarker, 0xffff);
          jpeg_save_markers(&codec, kIccMarker, 0xffff);
          jpeg_read_header(&codec, TRUE);
        }));
  if (codec.jpeg_color_space == JCS_CMYK || codec.jpeg_color_space == JCS_YCCK)
    throw std::runtime_error("CMYK pictures are not read; convert it to RGB first");
  Check(job, RunGuarded(job.escape, [&] {
          codec.out_color_space = JCS_RGB;
          jpeg_start_decompress(&codec);
        }));
  Still still;
  still.width = static_cast<int>(codec.output_width);
  still.height = static_cast<int>(codec.output_height);
  still.Allocate();
  Check(job, RunGuarded(job.escape, [&] {
          while (codec.output_scanline < codec.output_height) {
            JSAMPROW row = still.samples.data() + codec.output_scanline * still.RowBytes();
            jpeg_read_scanlines(&codec, &row, 1);
          }
        }));
  ReadTags(job, codec, still);  // before the end, which drops them
  Check(job, RunGuarded(job.escape, [&] { jpeg_finish_decompress(&codec); }));
  return still;
}

std::vector<std::uint8_t> EncodeJpeg(const Still& still) {
  Job job;
  Prepare(job);
  Writer writer(job);
  jpeg_compress_struct& codec = writer.codec;
  Check(job, RunGuarded(job.escape, [&] {
          jpeg_mem_dest(&codec, &writer.data, &writer.size);
          codec.image_width = still.width;
          codec.image_height = still.height;
          codec.input_components = 3;
          codec.in_color_space = JCS_RGB;
          jpeg_set_defaults(&codec);
          jpeg_set_quality(&codec, kQuality, TRUE);
          codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
          codec.optimize_coding = TRUE;
          if (still.resolution.x > 0 && still.resolution.y > 0) {
            const double scale = still.resolution.absolute ? kInchesPerMetre : 1;
            codec.density_unit = still.resolution.absolute ? 1 : 0;
            codec.X_density = static_cast<UINT16>(std::lround(still.resolution.x / scale));
            codec.Y_density = static_cast<UINT16>(std::lround(still.resolution.y / scale));
          }
          jpeg_start_compress(&codec, TRUE);
          if (!still.iccProfile.empty())
            jpeg_write_icc_profile(&codec, still.iccProfile.data(), static_cast<unsigned>(still.iccProfile.size()));
          while (codec.next_scanline < codec.image_height) {
            JSAMPROW row = const_cast<JSAMPROW>(still.samples.data() + codec.next_scanline * still.RowBytes());
            jpeg_write_scanlines(&codec, &row, 1);
          }
          jpeg_finish_compress(&codec);
        }));
  return {writer.data, writer.data + writer.size};
}

}  // namespace quentara::media
