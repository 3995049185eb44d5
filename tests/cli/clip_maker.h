/// Small videos for tests, made and read with FFmpeg alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "media/ffmpeg.h"

namespace quentara::media {

struct ClipOptions {
  /// Changes what the clip is: else 96 x 64 square pixels of 4:2:0 without tags, and times in 1/12800 s.
  std::function<void(AVCodecContext& encoder)> setUp = [](AVCodecContext&) {};
  std::vector<std::int64_t> times = {0, 512, 1024, 1536, 2048, 2560, 3072, 3584, 4096, 4608};  // 25 a second
  int rotation = 0;                                                                            // degrees clockwise
  std::vector<const char*> audio = {};  // the language of each stream of packets of noise
};

/// Writes a lossless clip of moving colours in the container that the path's extension names.
/// @return its pictures
std::vector<FramePtr> MakeClip(const std::string& path, const ClipOptions& options = {});

/// What FFmpeg finds in a file, without any of our own code.
struct Clip {
  DemuxerPtr file;
  const AVStream* stream;                                     // of the pictures; those of audio follow it
  std::vector<double> times;                                  // of the pictures, seconds
  int rotation;                                               // degrees clockwise
  std::vector<std::vector<std::vector<std::uint8_t>>> audio;  // packets of each stream
  std::vector<double> audioStarts;                            // of their first packets, seconds
};

Clip ReadClip(const std::string& path);

/// The samples of one plane of a picture, as if it had 8 bits.
std::vector<double> Samples(const AVFrame& picture, int plane);

}  // namespace quentara::media
