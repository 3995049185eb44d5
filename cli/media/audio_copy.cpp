#include "media/audio_copy.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "media/errors.h"

namespace quentara::media {

AudioCopy::AudioCopy(const std::string& sourcePath, AVFormatContext& muxer, bool wanted)
    : path_(sourcePath), demuxer_(OpenDemuxer(sourcePath)), packet_(NewPacket()) {
  for (unsigned i = 0; i < demuxer_->nb_streams; ++i) {
    AVStream& source = *demuxer_->streams[i];
    const AVCodecParameters& parameters = *source.codecpar;
    source.discard = parameters.codec_type == AVMEDIA_TYPE_AUDIO ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    if (parameters.codec_type != AVMEDIA_TYPE_AUDIO) continue;
    sourceHasAudio_ = true;
    if (!wanted) continue;
    if (avformat_query_codec(muxer.oformat, parameters.codec_id, FF_COMPLIANCE_NORMAL) == 0)
      throw std::runtime_error(std::string("this container cannot hold the input's audio (") +
                               avcodec_get_name(parameters.codec_id) + "); choose another, or leave the audio out");
    AVStream* target = avformat_new_stream(&muxer, nullptr);
    if (!target || avcodec_parameters_copy(target->codecpar, &parameters) < 0) throw std::bad_alloc();
    target->codecpar->codec_tag = 0;  // that of the source's container; the muxer has its own
    target->time_base = source.time_base;
    target->disposition = source.disposition;
    av_dict_copy(&target->metadata, source.metadata, 0);
    streams_.push_back({source.index, target});
  }
}

bool AudioCopy::ReadPacket() {
  for (;;) {
    av_packet_unref(packet_.get());
    const int error = av_read_frame(demuxer_.get(), packet_.get());
    if (error == AVERROR_EOF) return false;
    if (error < 0) throw InputError(path_ + ": its audio cannot be read: " + ErrorText(error));
    if (std::any_of(streams_.begin(), streams_.end(),
                    [&](const Stream& stream) { return stream.source == packet_->stream_index; }))
      return true;
  }
}

void AudioCopy::CopyUntil(std::int64_t end, const std::function<void(AVPacket&)>& write) {
  if (streams_.empty()) return;
  for (; hasPacket_ || (hasPacket_ = ReadPacket()); hasPacket_ = false) {
    const AVRational timeBase = demuxer_->streams[packet_->stream_index]->time_base;
    const std::int64_t stamp = packet_->pts != AV_NOPTS_VALUE ? packet_->pts : packet_->dts;
    const std::int64_t time = stamp == AV_NOPTS_VALUE ? start_ : av_rescale_q(stamp, timeBase, kFfmpegTime);
    if (time >= end) return;
    if (time < start_ || time >= end_) continue;
    AVStream* target = std::find_if(streams_.begin(), streams_.end(), [&](const Stream& stream) {
                         return stream.source == packet_->stream_index;
                       })->target;
    const std::int64_t shift = av_rescale_q(shift_, kFfmpegTime, timeBase);
    if (packet_->pts != AV_NOPTS_VALUE) packet_->pts += shift;
    if (packet_->dts != AV_NOPTS_VALUE) packet_->dts += shift;
    av_packet_rescale_ts(packet_.get(), timeBase, target->time_base);
    packet_->stream_index = target->index;
    packet_->pos = -1;
    write(*packet_);
  }
}

}  // namespace quentara::media
