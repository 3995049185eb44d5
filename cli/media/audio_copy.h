/// The audio of a video, taken over packet by packet.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "media/ffmpeg.h"

namespace quentara::media {

/// Copies all audio streams of a source, as they are, into a container that is being written.
class AudioCopy {
 public:
  /// Adds the streams to `muxer`, before its header is written.
  /// @param wanted  whether audio is copied at all
  /// @throws std::runtime_error if the container cannot hold one of them.
  AudioCopy(const std::string& sourcePath, AVFormatContext& muxer, bool wanted);

  bool SourceHasAudio() const { return sourceHasAudio_; }

  /// The file that is copied from.
  const AVFormatContext& Source() const { return *demuxer_; }

  /// Moves all that is copied by `shift`. Times here are the source's, in AV_TIME_BASE units.
  void Shift(std::int64_t shift) { shift_ = shift; }
  /// Leaves out what starts before `start`.
  void StartAt(std::int64_t start) { start_ = start; }
  /// Leaves out what starts at `end` or later.
  void EndAt(std::int64_t end) { end_ = end; }

  /// Hands `write` the packets, in the muxer's streams and times, that start before `end` and were not written yet.
  void CopyUntil(std::int64_t end, const std::function<void(AVPacket&)>& write);

 private:
  struct Stream {
    int source;
    AVStream* target;
  };

  /// Reads the next audio packet; false at the end.
  bool ReadPacket();

  std::string path_;
  DemuxerPtr demuxer_;
  std::vector<Stream> streams_;
  bool sourceHasAudio_ = false;
  PacketPtr packet_;
  bool hasPacket_ = false;
  std::int64_t start_ = std::numeric_limits<std::int64_t>::min();
  std::int64_t end_ = std::numeric_limits<std::int64_t>::max();
  std::int64_t shift_ = 0;
};

}  // namespace quentara::media
