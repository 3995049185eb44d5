/// Small videos for tests, made and read with FFmpeg alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/ffmpeg.h"

namespace quentara::media {

struct ClipOptions {
  int width = 96, height = 64;
  const char* encoder = "libx264";
  const char* settings = "qp=0";  // lossless
  AVPixelFormat format = AV_PIX_FMT_YUV420P;
  AVRational timeBase{1, 12800};
  std::vector<std::int64_t> times = {0, 512, 1024, 1536, 2048, 2560, 3072, 3584, 4096, 4608};  // 25 a second
  AVRational aspect{1, 1};
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVChromaLocation chroma = AVCHROMA_LOC_UNSPECIFIED;
  int rotation = 0;      // degrees clockwise
  int audioStreams = 0;  // of AAC
};

/// Writes a clip of moving colours in the container that the path's extension names.
void MakeClip(const std::string& path, const ClipOptions& options);

/// What FFmpeg finds in a file, without any of our own code.
struct ClipFacts {
  std::vector<std::int64_t> times;                            // of the frames, in the unit of timeBase
  std::vector<std::vector<std::vector<int>>> pictures;        // samples of each plane of each frame
  std::vector<std::vector<std::vector<std::uint8_t>>> audio;  // packets of each audio stream
  std::vector<double> audioStarts;                            // seconds, first packet of each stream
  std::vector<std::string> audioLanguages;
  AVRational timeBase, rate, aspect;
  AVCodecID codec;
  AVPixelFormat format;
  int width, height, rotation;
  double duration;  // of the pictures as the container states it, seconds
  AVColorPrimaries primaries;
  AVColorTransferCharacteristic transfer;
  AVColorSpace matrix;
  AVColorRange range;
  AVChromaLocation chroma;
};

ClipFacts ReadClip(const std::string& path);

/// The times of the frames in seconds after the first.
std::vector<double> Seconds(const ClipFacts& facts);

}  // namespace quentara::media
