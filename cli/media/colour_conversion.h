/// The pictures of a video to and from frames, by libswscale.
#pragma once

#include <cstdint>
#include <vector>

#include "media/ffmpeg.h"
#include "media/frame.h"

namespace quentara::media {

/// How the numbers of a video's pictures mean colours, as its file says.
struct ColourTags {
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVChromaLocation chromaLocation = AVCHROMA_LOC_UNSPECIFIED;
};

ColourTags TagsOf(const AVFrame& picture);

/// The matrix of YUV pictures that say none: BT.601 below 720 lines, BT.709 from there, as players assume.
AVColorSpace AssumedMatrix(int height);

/// Whether samples have more than 8 bits.
bool IsDeep(AVPixelFormat format);
bool HasAlpha(AVPixelFormat format);

/// Converts decoded pictures to frames with the pictures' own matrix, range and chroma location. Pictures of more than
/// 8 bits a sample become deep frames.
class FrameReader {
 public:
  /// @throws std::runtime_error if the pictures' colours cannot be converted
  Frame Read(const AVFrame& picture);

 private:
  ScalerPtr scaler_;
  AVPixelFormat format_ = AV_PIX_FMT_NONE;
  ColourTags tags_;
  FramePtr rgb_;
  std::vector<std::uint16_t> colourScale_, alphaScale_;  // from samples of rgb_ to those of deep frames
};

/// Converts frames to pictures of one format for an encoder.
class FrameWriter {
 public:
  /// @param tags  what the file will say; an unspecified matrix is AssumedMatrix(height), an unspecified range limited.
  FrameWriter(int width, int height, AVPixelFormat format, const ColourTags& tags);

  /// @param frame  of the width and height given.
  /// @throws std::runtime_error
  FramePtr Write(const Frame& frame);

 private:
  int width_, height_;
  AVPixelFormat format_;
  ColourTags tags_;
  ScalerPtr scalers_[2];  // from 8-bit and from deep frames
  FramePtr rgb_[2];
  std::vector<std::uint16_t> colourScale_, alphaScale_;  // from samples of deep frames to those of rgb_[1]
};

}  // namespace quentara::media
