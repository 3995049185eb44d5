#include "media/video_input.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "media/frame_origin.h"
#include "media/video_properties.h"

namespace quentara::media {
namespace {

/// The pictures of one stream of a file, in the order they are shown.
class PictureSource {
 public:
  explicit PictureSource(const std::string& path) : path_(path), demuxer_(OpenDemuxer(path)), packet_(NewPacket()) {
    const int index = av_find_best_stream(demuxer_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index < 0 || (demuxer_->streams[index]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0)
      throw InputError(path + ": has no video");
    stream_ = demuxer_->streams[index];

    const AVCodec* decoder = Decoder();
    if (!decoder)
      throw InputError(path + ": this FFmpeg has no decoder for " + avcodec_get_name(stream_->codecpar->codec_id));
    codec_.reset(avcodec_alloc_context3(decoder));
    if (!codec_) throw std::bad_alloc();
    int error = avcodec_parameters_to_context(codec_.get(), stream_->codecpar);
    codec_->pkt_timebase = stream_->time_base;
    codec_->thread_count = 0;
    if (error >= 0) error = avcodec_open2(codec_.get(), decoder, nullptr);
    if (error < 0) throw InputError(path + ": " + ErrorText(error));
  }

  AVFormatContext& Demuxer() const { return *demuxer_; }
  AVStream& Stream() const { return *stream_; }

  /// The next picture, null after the last.
  FramePtr Next() {
    FramePtr picture = NewFrame();
    for (;;) {
      int error = avcodec_receive_frame(codec_.get(), picture.get());
      if (error == AVERROR_EOF) return nullptr;
      if (error == 0) {
        // A decoder makes up what a damaged picture lacks.
        if ((picture->flags & AV_FRAME_FLAG_CORRUPT) != 0 || picture->decode_error_flags != 0)
          Fail(AVERROR_INVALIDDATA);
        ++count_;
        return picture;
      }
      if (error != AVERROR(EAGAIN)) Fail(error);
      SendPacket();
    }
  }

 private:
  const AVCodec* Decoder() const {
    // FFmpeg's own decoders of VP8 and VP9 leave alpha out.
    const AVDictionaryEntry* alpha = av_dict_get(stream_->metadata, "alpha_mode", nullptr, 0);
    if (alpha && std::strcmp(alpha->value, "1") == 0) {
      const bool isVp9 = stream_->codecpar->codec_id == AV_CODEC_ID_VP9;
      const AVCodec* decoder = avcodec_find_decoder_by_name(isVp9 ? "libvpx-vp9" : "libvpx");
      if (decoder && decoder->id == stream_->codecpar->codec_id) return decoder;
    }
    return avcodec_find_decoder(stream_->codecpar->codec_id);
  }

  /// Hands the decoder the stream's next packet, or the end.
  void SendPacket() {
    int error;
    do {
      av_packet_unref(packet_.get());
      error = av_read_frame(demuxer_.get(), packet_.get());
      if (error >= 0) NoteEnd();
    } while (error >= 0 && packet_->stream_index != stream_->index);
    if (error < 0 && error != AVERROR_EOF) Fail(error);
    if (error == AVERROR_EOF) CheckLength();
    if (error >= 0 && (packet_->flags & AV_PKT_FLAG_CORRUPT) != 0) Fail(AVERROR_INVALIDDATA);
    error = avcodec_send_packet(codec_.get(), error < 0 ? nullptr : packet_.get());
    if (error < 0) Fail(error);
  }

  void NoteEnd() {
    const std::int64_t start = packet_->pts != AV_NOPTS_VALUE ? packet_->pts : packet_->dts;
    if (start == AV_NOPTS_VALUE) return;
    const AVRational timeBase = demuxer_->streams[packet_->stream_index]->time_base;
    start_ = std::min(start_, av_rescale_q(start, timeBase, kFfmpegTime));
    end_ = std::max(end_, av_rescale_q(start + packet_->duration, timeBase, kFfmpegTime));
  }

  /// Some containers just end where a file is cut off; their head still says how long it was.
  void CheckLength() const {
    const bool stated = demuxer_->duration > 0 && demuxer_->duration_estimation_method != AVFMT_DURATION_FROM_BITRATE;
    if (!stated || end_ == AV_NOPTS_VALUE) return;
    // Counted from 0 where the file starts later: some containers state their length so, and too much is no fault here.
    const std::int64_t length = end_ - std::min<std::int64_t>(start_, 0);
    const std::int64_t tolerance = AV_TIME_BASE / 2 + length / 1000;
    if (length + tolerance >= demuxer_->duration) return;
    const auto seconds = [](std::int64_t time) { return std::to_string(time / AV_TIME_BASE) + " s"; };
    throw InputError(path_ + ": is cut short: it ends after " + seconds(length) + " of " + seconds(demuxer_->duration) +
                     "; its first " + std::to_string(count_) + " frames can be had");
  }

  [[noreturn]] void Fail(int error) const {
    const std::string place = count_ > 0 ? " after frame " + std::to_string(count_) : "";
    throw InputError(path_ + ": cannot be read" + place + ": " + ErrorText(error));
  }

  std::string path_;
  DemuxerPtr demuxer_;
  PacketPtr packet_;
  AVStream* stream_ = nullptr;
  CodecPtr codec_;
  std::int64_t count_ = 0;
  std::int64_t start_ = 0;
  std::int64_t end_ = AV_NOPTS_VALUE;  // of what was read so far, in AV_TIME_BASE units
};

Orientation OrientationOf(const AVStream& stream) {
  const std::uint8_t* matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
  return matrix ? MatrixOrientation(reinterpret_cast<const std::int32_t*>(matrix)) : 1;
}

class VideoInput final : public Input {
 public:
  VideoInput(const std::string& path, const std::optional<FrameRange>& range) : path_(path), source_(path) {
    AVStream& stream = source_.Stream();
    pending_ = source_.Next();
    if (!pending_) throw InputError(path + ": has no frames");
    const AVRational rate = av_guess_frame_rate(&source_.Demuxer(), &stream, pending_.get());
    properties_ = {path,
                   stream.index,
                   stream.time_base,
                   rate.num > 0 ? rate : AVRational{kDefaultFrameRate.numerator, kDefaultFrameRate.denominator},
                   static_cast<AVPixelFormat>(pending_->format),
                   TagsOf(*pending_),
                   OrientationOf(stream),
                   pending_->interlaced_frame != 0,
                   range};
    const AVRational aspect = av_guess_sample_aspect_ratio(&source_.Demuxer(), &stream, pending_.get());
    info_ = {pending_->width,
             pending_->height,
             IsDeep(properties_.format),
             std::nullopt,
             {properties_.frameRate.num, properties_.frameRate.den},
             aspect.num > 0 ? Rational{aspect.num, aspect.den} : Rational{1, 1},
             HasAlpha(properties_.format)};
    if (range)
      info_.frameCount = range->Count();
    else if (stream.nb_frames > 0)
      info_.frameCount = stream.nb_frames;
    if (range && range->First() < 1) throw InputError(path + ": the frames of a video are counted from 1");
    if (range && stream.nb_frames > 0 && range->Last() > stream.nb_frames) FailBeyondEnd(stream.nb_frames);
    time_ = TimeOf(*pending_, 0);
  }

  Kind GetKind() const override { return Kind::Video; }
  const std::string& Path() const override { return path_; }
  FrameInfo Info() const override { return info_; }
  const VideoProperties* Video() const override { return &properties_; }

  std::optional<std::vector<std::int64_t>> Numbers() const override {
    if (!properties_.range) return std::nullopt;
    std::vector<std::int64_t> numbers;
    for (auto number = properties_.range->From(1); number; number = properties_.range->From(*number + 1))
      numbers.push_back(*number);
    return numbers;
  }

  std::optional<Frame> Next() override {
    const std::optional<FrameRange>& range = properties_.range;
    while (pending_ && !(range && number_ >= range->Last())) {
      const FramePtr picture = std::move(pending_);
      const std::int64_t time = time_, number = ++number_;
      const std::int64_t duration = ReadAhead(*picture);
      if (!range || range->Contains(number)) return Convert(*picture, number, time, duration);
    }
    if (!readError_.empty() && !(range && number_ >= range->Last())) throw InputError(readError_);
    if (range && number_ < range->Last()) FailBeyondEnd(number_);
    return std::nullopt;
  }

 private:
  /// Reads the picture after `picture`, and so learns how long that one is shown.
  std::int64_t ReadAhead(const AVFrame& picture) {
    const AVRational perFrame = av_inv_q(properties_.frameRate);
    std::int64_t expected = picture.pkt_duration;
    if (expected <= 0) expected = std::max<std::int64_t>(av_rescale_q(1, perFrame, properties_.timeBase), 1);
    try {
      pending_ = source_.Next();
    } catch (const InputError& error) {
      // The frame before the damage is whole and still to be had.
      readError_ = error.what();
    }
    if (!pending_) return expected;
    const std::int64_t previous = std::exchange(time_, TimeOf(*pending_, time_ + expected));
    if (time_ <= previous) time_ = previous + 1;
    return time_ - previous;
  }

  static std::int64_t TimeOf(const AVFrame& picture, std::int64_t expected) {
    return picture.best_effort_timestamp != AV_NOPTS_VALUE ? picture.best_effort_timestamp : expected;
  }

  Frame Convert(const AVFrame& picture, std::int64_t number, std::int64_t time, std::int64_t duration) try {
    if (picture.width != info_.width || picture.height != info_.height)
      throw std::runtime_error("the size of its pictures changes at frame " + std::to_string(number));
    Frame frame = reader_.Read(picture);
    const auto origin = std::make_shared<FrameOrigin>();
    origin->hasAlpha = info_.hasAlpha;
    origin->time = time;
    origin->duration = duration;
    origin->interlaced = picture.interlaced_frame != 0;
    origin->topFieldFirst = picture.top_field_first != 0;
    frame.number = number;
    frame.origin = origin;
    return frame;
  } catch (const std::runtime_error& error) {
    throw InputError(path_ + ": " + error.what());
  }

  [[noreturn]] void FailBeyondEnd(std::int64_t count) const {
    throw InputError(path_ + ": has " + std::to_string(count) + " frames, but frame " +
                     std::to_string(properties_.range->Last()) + " was asked for");
  }

  std::string path_;
  PictureSource source_;
  VideoProperties properties_;
  FrameInfo info_;
  FrameReader reader_;
  FramePtr pending_;  // the picture after the last one given
  std::int64_t time_ = 0;
  std::int64_t number_ = 0;  // of the last picture given or passed over
  std::string readError_;
};

}  // namespace

std::unique_ptr<Input> OpenVideo(const std::string& path, const std::optional<FrameRange>& range) {
  return std::make_unique<VideoInput>(path, range);
}

}  // namespace quentara::media
