#include "media/encoder_choice.h"

#include <stdexcept>

namespace quentara::media {
namespace {

/// For 8-bit and deep frames, with chroma 4:2:0, 4:2:2 and 4:4:4.
using Formats = AVPixelFormat[2][3];

constexpr Formats kYuv = {{AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P},
                          {AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV422P10, AV_PIX_FMT_YUV444P10}};
constexpr Formats kYuva420 = {{AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA420P},
                              {AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUVA420P}};
constexpr Formats kYuva444 = {{AV_PIX_FMT_YUVA444P10, AV_PIX_FMT_YUVA444P10, AV_PIX_FMT_YUVA444P10},
                              {AV_PIX_FMT_YUVA444P10, AV_PIX_FMT_YUVA444P10, AV_PIX_FMT_YUVA444P10}};
constexpr Formats kRgba = {{AV_PIX_FMT_BGRA, AV_PIX_FMT_BGRA, AV_PIX_FMT_BGRA},
                           {AV_PIX_FMT_RGBA64, AV_PIX_FMT_RGBA64, AV_PIX_FMT_RGBA64}};

struct Encoder {
  const char* name;
  const char* options;
  const Formats& formats;
  bool keepsAlpha;
};

constexpr Encoder kH264{"libx264", "preset=medium:crf=14", kYuv, false};
constexpr Encoder kH264InOrder{"libx264", "preset=medium:crf=14:bf=0", kYuv, false};
constexpr Encoder kVp9{"libvpx-vp9", "crf=15:b=0:deadline=good:cpu-used=2:row-mt=1", kYuv, false};
constexpr Encoder kVp9Alpha{"libvpx-vp9", "crf=15:b=0:deadline=good:cpu-used=2:auto-alt-ref=0", kYuva420, true};
constexpr Encoder kProRes4444{"prores_ks", "profile=4444:alpha_bits=16", kYuva444, true};
constexpr Encoder kFfv1{"ffv1", "level=3:slices=4", kRgba, true};

const Encoder& EncoderFor(const std::string& extension, bool hasAlpha) {
  if (extension == ".webm") return hasAlpha ? kVp9Alpha : kVp9;
  if (extension == ".avi") return kH264InOrder;
  if (extension == ".mov" && hasAlpha) return kProRes4444;
  if (extension == ".mkv" && hasAlpha) return kFfv1;
  return kH264;
}

/// 0 for 4:2:0, 1 for 4:2:2, 2 for 4:4:4.
int ChromaOf(AVPixelFormat source) {
  if (source == AV_PIX_FMT_NONE) return 0;
  const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(source);
  if (layout->nb_components < 3) return 0;
  return layout->log2_chroma_w > 0 ? (layout->log2_chroma_h > 0 ? 0 : 1) : 2;
}

bool IsRgb(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// What the output's file says of its colours.
ColourTags OutputTags(const PictureTraits& traits, AVCodecID codec, AVPixelFormat format) {
  ColourTags tags = traits.sourceTags;
  const bool fromPictures = traits.source == AV_PIX_FMT_NONE;
  if (fromPictures) {
    tags.primaries = AVCOL_PRI_BT709;
    tags.transfer = AVCOL_TRC_BT709;
  }
  if (IsRgb(format)) {
    tags.matrix = AVCOL_SPC_RGB;
    tags.range = AVCOL_RANGE_JPEG;
  } else if (fromPictures || IsRgb(traits.source)) {
    tags.matrix = AssumedMatrix(traits.height);
    tags.range = AVCOL_RANGE_MPEG;
  }
  // ProRes has no full range.
  if (codec == AV_CODEC_ID_PRORES) tags.range = AVCOL_RANGE_MPEG;
  return tags;
}

bool Takes(const AVCodec* encoder, AVPixelFormat format) {
  for (const AVPixelFormat* known = encoder->pix_fmts; known && *known != AV_PIX_FMT_NONE; ++known)
    if (*known == format) return true;
  return false;
}

}  // namespace

EncoderChoice ChooseEncoder(const std::string& extension, const PictureTraits& traits) {
  const Encoder& encoder = EncoderFor(extension, traits.hasAlpha);
  const AVCodec* codec = avcodec_find_encoder_by_name(encoder.name);
  if (!codec) throw std::runtime_error(std::string("this FFmpeg has no encoder ") + encoder.name);

  int chroma = ChromaOf(traits.source);
  // x264 takes halved chroma only where the sides can be halved.
  const bool isH264 = codec->id == AV_CODEC_ID_H264;
  if (isH264 && (traits.width % 2 != 0 || (chroma == 0 && traits.height % 2 != 0))) chroma = 2;
  AVPixelFormat format = encoder.formats[traits.deep][chroma];
  if (!Takes(codec, format)) format = encoder.formats[0][chroma];
  return {codec, format, encoder.options, encoder.keepsAlpha, OutputTags(traits, codec->id, format)};
}

}  // namespace quentara::media
