/// Which encoder a video output uses, and how.
#pragma once

#include <string>

#include "media/colour_conversion.h"
#include "media/ffmpeg.h"

namespace quentara::media {

/// What the frames of a video output are.
struct PictureTraits {
  int width, height;
  bool deep, hasAlpha;
  AVPixelFormat source;   ///< the format of the video that they come from, AV_PIX_FMT_NONE for pictures
  ColourTags sourceTags;  ///< of that video
};

struct EncoderChoice {
  const AVCodec* encoder;
  AVPixelFormat format;
  const char* options;  ///< as av_dict_parse_string takes them
  bool keepsAlpha;
  ColourTags tags;  ///< what the output is to say of its colours
};

/// The encoder for a container, named by its extension:
///   .mp4 .m4v .mov .mkv  H.264 by x264 at crf 14, visually lossless;
///   .avi                 the same without B-frames, which that container has no times for;
///   .webm                VP9 by libvpx at crf 15;
///   with alpha           .mov ProRes 4444, .mkv FFV1 (lossless RGB), .webm VP9 with alpha; the others leave it out.
/// A video's colour tags stay; pictures are written as BT.709 with the matrix that players assume for their size.
/// Chroma is kept as fine as in the source and is 4:2:0 for pictures; deep frames have 10 bits (FFV1 16).
/// @throws std::runtime_error if this FFmpeg lacks the encoder, or the extension is none of these.
EncoderChoice ChooseEncoder(const std::string& extension, const PictureTraits& traits);

}  // namespace quentara::media
