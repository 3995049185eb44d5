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
  std::vector<const char*> audio;  // the language of each stream, which holds a second of packets or more
};

/// Writes a lossless clip of moving colours in the container that the path's extension names.
void MakeClip(const std::string& path, const ClipOptions& options = {});

/// What FFmpeg finds in a file, without any of our own code.
struct Clip {
  struct Audio {
    std::string language;
    double start;  // seconds, of the first packet
    std::vector<std::vector<std::uint8_t>> packets;
  };
  DemuxerPtr file;
  const AVStream* stream;  // of the pictures; those of audio follow it
  std::vector<FramePtr> frames;
  std::vector<Audio> audio;
};

Clip ReadClip(const std::string& path);

/// Degrees clockwise.
int RotationOf(const Clip& clip);

/// The times of the frames in seconds after the first.
std::vector<double> Seconds(const Clip& clip);

/// The samples of one plane of a picture.
std::vector<std::uint16_t> Samples(const AVFrame& picture, int plane);

}  // namespace quentara::media
