#include "media/ffmpeg.h"

#include <cstdarg>
#include <mutex>
#include <new>
#include <utility>

#include "media/errors.h"

namespace quentara::media {
namespace {

/// The last error that any of FFmpeg's threads logged.
class LastReport {
 public:
  void Set(const char* text) {
    const std::lock_guard lock(mutex_);
    text_ = text;
    while (!text_.empty() && (text_.back() == '\n' || text_.back() == '.')) text_.pop_back();
  }
  std::string Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(text_, std::string());
  }

 private:
  std::mutex mutex_;
  std::string text_;
};

LastReport& TheLastReport() {
  static LastReport report;
  return report;
}

void KeepReport(void*, int level, const char* format, va_list arguments) {
  if (level > AV_LOG_ERROR) return;
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  TheLastReport().Set(text);
}

}  // namespace

FramePtr NewFrame() {
  FramePtr frame(av_frame_alloc());
  if (!frame) throw std::bad_alloc();
  return frame;
}

PacketPtr NewPacket() {
  PacketPtr packet(av_packet_alloc());
  if (!packet) throw std::bad_alloc();
  return packet;
}

DemuxerPtr OpenDemuxer(const std::string& path) {
  SilenceFfmpeg();
  AVFormatContext* opened = nullptr;
  // The protocol is named, so that a colon in a file's name means nothing.
  int error = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, nullptr);
  DemuxerPtr demuxer(opened);
  if (error >= 0) error = avformat_find_stream_info(demuxer.get(), nullptr);
  if (error < 0) throw InputError(path + ": " + ErrorText(error));
  return demuxer;
}

void SilenceFfmpeg() {
  static const bool done = (av_log_set_callback(KeepReport), true);
  static_cast<void>(done);
}

std::string ErrorText(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = "";
  av_strerror(code, text, sizeof text);
  const std::string report = TheLastReport().Take();
  return report.empty() ? text : std::string(text) + " (" + report + ")";
}

}  // namespace quentara::media
