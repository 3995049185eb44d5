#include "media/colour_conversion.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

namespace quentara::media {
namespace {

constexpr AVPixelFormat kRgbFormats[2] = {AV_PIX_FMT_ARGB, AV_PIX_FMT_RGBA64};  // of 8-bit and of deep frames

bool IsRgb(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// The formats with J in their names say by it that their range is full.
AVPixelFormat WithoutRange(AVPixelFormat format, ColourTags& tags) {
  constexpr struct {
    AVPixelFormat full, plain;
  } kPairs[] = {{AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P},
                {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUV422P},
                {AV_PIX_FMT_YUVJ444P, AV_PIX_FMT_YUV444P},
                {AV_PIX_FMT_YUVJ440P, AV_PIX_FMT_YUV440P},
                {AV_PIX_FMT_YUVJ411P, AV_PIX_FMT_YUV411P}};
  for (const auto& pair : kPairs)
    if (format == pair.full) {
      tags.range = AVCOL_RANGE_JPEG;
      return pair.plain;
    }
  return format;
}

const int* Coefficients(AVColorSpace matrix, int height) {
  if (matrix == AVCOL_SPC_UNSPECIFIED || matrix == AVCOL_SPC_RGB) matrix = AssumedMatrix(height);
  switch (matrix) {
    case AVCOL_SPC_BT709:
    case AVCOL_SPC_FCC:
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
    case AVCOL_SPC_SMPTE240M:
    case AVCOL_SPC_BT2020_NCL:
      return sws_getCoefficients(matrix);  // whose numbering is the same
    default:
      throw std::runtime_error(std::string("colours of the kind ") + av_color_space_name(matrix) +
                               " are not converted");
  }
}

/// Where chroma samples lie, in 1/256 of a luma sample right of and below the first.
void SetChromaPosition(SwsContext* scaler, const char* side, AVPixelFormat format, AVChromaLocation location) {
  const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(format);
  if (location == AVCHROMA_LOC_UNSPECIFIED) location = AVCHROMA_LOC_LEFT;
  const bool between =
      location == AVCHROMA_LOC_CENTER || location == AVCHROMA_LOC_TOP || location == AVCHROMA_LOC_BOTTOM;
  const bool top = location == AVCHROMA_LOC_TOPLEFT || location == AVCHROMA_LOC_TOP;
  const bool bottom = location == AVCHROMA_LOC_BOTTOMLEFT || location == AVCHROMA_LOC_BOTTOM;
  if (layout->log2_chroma_w == 1)
    av_opt_set_int(scaler, (std::string(side) + "_h_chr_pos").c_str(), between ? 128 : 0, 0);
  if (layout->log2_chroma_h == 1)
    av_opt_set_int(scaler, (std::string(side) + "_v_chr_pos").c_str(), top ? 0 : bottom ? 256 : 128, 0);
}

/// A converter between a video's format and one of kRgbFormats, in either direction.
ScalerPtr NewScaler(int width, int height, AVPixelFormat from, AVPixelFormat to, const ColourTags& tags) {
  ScalerPtr scaler(sws_alloc_context());
  if (!scaler) throw std::bad_alloc();
  const bool decodes = to == kRgbFormats[0] || to == kRgbFormats[1];
  const AVPixelFormat format = decodes ? from : to;
  const int videoRange = tags.range == AVCOL_RANGE_JPEG || IsRgb(format);
  SwsContext* context = scaler.get();
  av_opt_set_int(context, "srcw", width, 0);
  av_opt_set_int(context, "srch", height, 0);
  av_opt_set_int(context, "dstw", width, 0);
  av_opt_set_int(context, "dsth", height, 0);
  av_opt_set_int(context, "src_format", from, 0);
  av_opt_set_int(context, "dst_format", to, 0);
  av_opt_set_int(context, "src_range", decodes ? videoRange : 1, 0);
  av_opt_set_int(context, "dst_range", decodes ? 1 : videoRange, 0);
  av_opt_set_int(context, "sws_flags",
                 SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT, 0);
  SetChromaPosition(context, decodes ? "src" : "dst", format, tags.chromaLocation);
  const int* coefficients = Coefficients(tags.matrix, height);
  if (sws_init_context(context, nullptr, nullptr) < 0)
    throw std::runtime_error(std::string("pictures of the kind ") + av_get_pix_fmt_name(format) + " are not converted");
  constexpr int kNeutral = 1 << 16;
  sws_setColorspaceDetails(context, coefficients, decodes ? videoRange : 1, coefficients, decodes ? 1 : videoRange, 0,
                           kNeutral, kNeutral);
  return scaler;
}

/// The samples of libswscale's RGBA64 that stand for full colour and full alpha. RGB has 65535, but what comes from or
/// goes to YUV is only shifted: limited range has white at 255 * 256, full range and alpha at their own highest sample.
struct Whites {
  int colour, alpha;
};

Whites WhitesFor(AVPixelFormat format, AVColorRange range) {
  if (IsRgb(format)) return {65535, 65535};
  const int bits = av_pix_fmt_desc_get(format)->comp[0].depth, highest = ((1 << bits) - 1) << (16 - bits);
  return {range == AVCOL_RANGE_JPEG ? highest : 255 << 8, highest};
}

/// table[v] is v * toWhite / fromWhite to nearest, for v from 0 to `last`; never above toWhite.
std::vector<std::uint16_t> ScaleTable(int fromWhite, int toWhite, int last) {
  std::vector<std::uint16_t> table(last + 1);
  for (std::int64_t v = 0; v <= last; ++v)
    table[v] = static_cast<std::uint16_t>(std::min<std::int64_t>((v * toWhite + fromWhite / 2) / fromWhite, toWhite));
  return table;
}

FramePtr NewPicture(int width, int height, AVPixelFormat format) {
  FramePtr picture = NewFrame();
  picture->width = width;
  picture->height = height;
  picture->format = format;
  if (av_frame_get_buffer(picture.get(), 0) < 0) throw std::bad_alloc();
  return picture;
}

void Scale(SwsContext* scaler, const AVFrame& from, AVFrame& to) {
  if (sws_scale(scaler, from.data, from.linesize, 0, from.height, to.data, to.linesize) != from.height)
    throw std::runtime_error("the colours of a picture could not be converted");
}

}  // namespace

ColourTags TagsOf(const AVFrame& picture) {
  ColourTags tags{picture.color_primaries, picture.color_trc, picture.colorspace, picture.color_range,
                  picture.chroma_location};
  WithoutRange(static_cast<AVPixelFormat>(picture.format), tags);
  return tags;
}

AVColorSpace AssumedMatrix(int height) {
  return height < 720 ? AVCOL_SPC_SMPTE170M : AVCOL_SPC_BT709;
}

bool IsDeep(AVPixelFormat format) {
  return av_pix_fmt_desc_get(format)->comp[0].depth > 8;
}

bool HasAlpha(AVPixelFormat format) {
  return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

Frame FrameReader::Read(const AVFrame& picture) {
  ColourTags tags = TagsOf(picture);
  const AVPixelFormat format = WithoutRange(static_cast<AVPixelFormat>(picture.format), tags);
  const bool deep = IsDeep(format);
  const bool same = scaler_ && format == format_ && tags.matrix == tags_.matrix && tags.range == tags_.range &&
                    tags.chromaLocation == tags_.chromaLocation && rgb_->width == picture.width &&
                    rgb_->height == picture.height;
  if (!same) {
    scaler_ = NewScaler(picture.width, picture.height, format, kRgbFormats[deep], tags);
    rgb_ = NewPicture(picture.width, picture.height, kRgbFormats[deep]);
    format_ = format;
    tags_ = tags;
    const Whites whites = WhitesFor(format, tags.range);
    colourScale_ = deep ? ScaleTable(whites.colour, kDeepWhite, 65535) : std::vector<std::uint16_t>();
    alphaScale_ = deep ? ScaleTable(whites.alpha, kDeepWhite, 65535) : std::vector<std::uint16_t>();
  }
  Scale(scaler_.get(), picture, *rgb_);

  const bool opaque = !HasAlpha(format);
  Frame frame = BlankFrame(picture.width, picture.height, deep);
  for (int y = 0; y < frame.height; ++y) {
    const std::uint8_t* row = rgb_->data[0] + static_cast<std::ptrdiff_t>(y) * rgb_->linesize[0];
    if (!deep) {
      std::copy_n(row, frame.RowBytes(), frame.Bytes(y));
      continue;
    }
    const auto* in = reinterpret_cast<const std::uint16_t*>(row);
    std::uint16_t* out = frame.Deep(y);
    for (int x = 0; x < frame.width; ++x, in += 4, out += 4) {
      out[0] = opaque ? kDeepWhite : alphaScale_[in[3]];
      for (int c = 0; c < 3; ++c) out[c + 1] = colourScale_[in[c]];
    }
  }
  return frame;
}

FrameWriter::FrameWriter(int width, int height, AVPixelFormat format, const ColourTags& tags)
    : width_(width), height_(height), format_(format), tags_(tags) {
  const Whites whites = WhitesFor(format, tags.range);
  colourScale_ = ScaleTable(kDeepWhite, whites.colour, kDeepWhite);
  alphaScale_ = ScaleTable(kDeepWhite, whites.alpha, kDeepWhite);
}

FramePtr FrameWriter::Write(const Frame& frame) {
  const bool deep = frame.deep;
  if (!scalers_[deep]) {
    scalers_[deep] = NewScaler(width_, height_, kRgbFormats[deep], format_, tags_);
    rgb_[deep] = NewPicture(width_, height_, kRgbFormats[deep]);
  }
  AVFrame& rgb = *rgb_[deep];
  for (int y = 0; y < height_; ++y) {
    std::uint8_t* row = rgb.data[0] + static_cast<std::ptrdiff_t>(y) * rgb.linesize[0];
    if (!deep) {
      std::copy_n(frame.Bytes(y), frame.RowBytes(), row);
      continue;
    }
    const std::uint16_t* in = frame.Deep(y);
    auto* out = reinterpret_cast<std::uint16_t*>(row);
    for (int x = 0; x < width_; ++x, in += 4, out += 4) {
      for (int c = 0; c < 3; ++c) out[c] = colourScale_[std::min<int>(in[c + 1], kDeepWhite)];
      out[3] = alphaScale_[std::min<int>(in[0], kDeepWhite)];
    }
  }
  FramePtr picture = NewPicture(width_, height_, format_);
  Scale(scalers_[deep].get(), rgb, *picture);
  picture->color_primaries = tags_.primaries;
  picture->color_trc = tags_.transfer;
  picture->colorspace = tags_.matrix;
  picture->color_range = tags_.range;
  picture->chroma_location = tags_.chromaLocation;
  return picture;
}

}  // namespace quentara::media
