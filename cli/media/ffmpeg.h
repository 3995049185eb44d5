/// FFmpeg's objects with owners, and its errors as text.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <string>

namespace quentara::media {

/// The unit of times that belong to no stream. FFmpeg's own name for it is C and no C++.
constexpr AVRational kFfmpegTime{1, AV_TIME_BASE};

struct FfmpegDeleter {
  void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};

using CodecPtr = std::unique_ptr<AVCodecContext, FfmpegDeleter>;
using FramePtr = std::unique_ptr<AVFrame, FfmpegDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, FfmpegDeleter>;
using ScalerPtr = std::unique_ptr<SwsContext, FfmpegDeleter>;

struct DemuxerCloser {
  void operator()(AVFormatContext* demuxer) const { avformat_close_input(&demuxer); }
};
using DemuxerPtr = std::unique_ptr<AVFormatContext, DemuxerCloser>;

/// @throws std::bad_alloc
FramePtr NewFrame();
PacketPtr NewPacket();

/// Opens a media file for reading and finds its streams.
/// @throws InputError naming the file
DemuxerPtr OpenDemuxer(const std::string& path);

/// From here on FFmpeg prints nothing; what it reports is kept for ErrorText.
void SilenceFfmpeg();

/// What an error code of FFmpeg means, with the last thing that FFmpeg reported since this was called before.
std::string ErrorText(int code);

}  // namespace quentara::media
