#include "media/video_output.h"

#include <algorithm>
#include <map>
#include <new>
#include <optional>

#include "media/audio_copy.h"
#include "media/encoder_choice.h"
#include "media/frame_origin.h"
#include "media/still_output.h"
#include "media/temporary_file.h"
#include "media/video_properties.h"

namespace quentara::media {
namespace {

struct MuxerCloser {
  void operator()(AVFormatContext* muxer) const {
    avio_closep(&muxer->pb);
    avformat_free_context(muxer);
  }
};
using MuxerPtr = std::unique_ptr<AVFormatContext, MuxerCloser>;

const char* MuxerName(const std::string& extension) {
  if (extension == ".mov") return "mov";
  if (extension == ".mkv") return "matroska";
  if (extension == ".avi") return "avi";
  if (extension == ".webm") return "webm";
  return "mp4";
}

class VideoOutput final : public Output {
 public:
  VideoOutput(const std::string& path, const std::string& extension, const Input& input, const OutputOptions& options)
      : path_(path),
        overwrite_(options.overwrite),
        isMov_(extension != ".mkv" && extension != ".webm" && extension != ".avi") {
    if (input.GetKind() == Input::Kind::Still)
      throw OutputError(path + ": a video is made from a video or a numbered sequence, not from a single picture");
    RefuseExisting({path}, input, overwrite_);
    SilenceFfmpeg();
    if (input.Video()) source_ = *input.Video();
    file_.emplace(path);
    AVFormatContext* muxer = nullptr;
    Check(avformat_alloc_output_context2(&muxer, nullptr, MuxerName(extension), ("file:" + file_->Path()).c_str()));
    muxer_.reset(muxer);
    try {
      OpenEncoder(extension, input.Info(), options);
      AddPictureStream();
      if (source_) TakeOverFromSource(options.audio);
    } catch (const OutputError&) {
      throw;
    } catch (const std::runtime_error& error) {
      throw OutputError(path + ": " + error.what());
    }
    WriteHeader();
  }

  std::vector<std::string> Warnings() const override { return warnings_; }

  void Write(const Frame& frame) override try {
    if (frame.width != frameWidth_ || frame.height != frameHeight_)
      throw OutputError(path_ + ": frame " + std::to_string(frame.number) + " is " + std::to_string(frame.width) +
                        " x " + std::to_string(frame.height) + " pixels, but those before it " +
                        std::to_string(frameWidth_) + " x " + std::to_string(frameHeight_));
    FramePtr picture = writer_->Write(turn_ == 1 ? frame : TurnUpright(frame, turn_));
    SetTime(frame, *picture);
    if (interlaced_ && frame.origin) {
      picture->interlaced_frame = frame.origin->interlaced;
      picture->top_field_first = frame.origin->topFieldFirst;
    }
    Encode(picture.get());
    ++count_;
  } catch (const OutputError&) {
    throw;
  } catch (const InputError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw OutputError(path_ + ": " + error.what());
  }

  void Finish() override {
    if (count_ == 0) throw OutputError(path_ + ": there is no frame to write");
    Encode(nullptr);
    if (audio_) {
      if (source_->range) audio_->EndAt(sourceEnd_);
      audio_->CopyUntil(std::numeric_limits<std::int64_t>::max(), [&](AVPacket& packet) { WritePacket(packet); });
    }
    Check(av_write_trailer(muxer_.get()));
    Check(avio_closep(&muxer_->pb));
    file_->Commit(overwrite_);
  }

 private:
  void Check(int error) const {
    if (error < 0) throw OutputError(path_ + ": writing failed: " + ErrorText(error));
  }

  void OpenEncoder(const std::string& extension, const FrameInfo& info, const OutputOptions& options) {
    frameWidth_ = info.width;
    frameHeight_ = info.height;
    // Only these containers tell a player to turn the pictures.
    if (source_ && !isMov_) turn_ = std::max(source_->orientation, 1);
    const bool swaps = SwapsSides(turn_);
    const PictureTraits traits{swaps ? info.height : info.width,
                               swaps ? info.width : info.height,
                               info.deep,
                               info.hasAlpha,
                               source_ ? source_->format : AV_PIX_FMT_NONE,
                               source_ ? source_->tags : ColourTags{}};
    const EncoderChoice choice = ChooseEncoder(extension, traits);
    if (traits.hasAlpha && !choice.keepsAlpha) warnings_.push_back(path_ + ": the alpha channel is left out");
    tags_ = choice.tags;
    writer_.emplace(traits.width, traits.height, choice.format, tags_);

    AVRational rate{static_cast<int>(options.frameRate.numerator), static_cast<int>(options.frameRate.denominator)};
    if (source_) rate = source_->frameRate;
    const AVRational aspect{static_cast<int>(swaps ? info.pixelAspect.denominator : info.pixelAspect.numerator),
                            static_cast<int>(swaps ? info.pixelAspect.numerator : info.pixelAspect.denominator)};
    // AVI has one time for every frame.
    steady_ = !source_ || extension == ".avi";
    interlaced_ = source_ && source_->interlaced && turn_ == 1 && info.height % 4 == 0;

    encoder_.reset(avcodec_alloc_context3(choice.encoder));
    if (!encoder_) throw std::bad_alloc();
    encoder_->width = traits.width;
    encoder_->height = traits.height;
    encoder_->pix_fmt = choice.format;
    encoder_->sample_aspect_ratio = aspect;
    encoder_->framerate = rate;
    encoder_->time_base = steady_ ? av_inv_q(rate) : source_->timeBase;
    encoder_->color_primaries = tags_.primaries;
    encoder_->color_trc = tags_.transfer;
    encoder_->colorspace = tags_.matrix;
    encoder_->color_range = tags_.range;
    encoder_->chroma_sample_location = tags_.chromaLocation;
    encoder_->thread_count = 0;
    if (interlaced_) encoder_->flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
    if ((muxer_->oformat->flags & AVFMT_GLOBALHEADER) != 0) encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* settings = nullptr;
    av_dict_parse_string(&settings, choice.options, "=", ":", 0);
    const int error = avcodec_open2(encoder_.get(), choice.encoder, &settings);
    av_dict_free(&settings);
    Check(error);
  }

  void AddPictureStream() {
    stream_ = avformat_new_stream(muxer_.get(), nullptr);
    if (!stream_) throw std::bad_alloc();
    Check(avcodec_parameters_from_context(stream_->codecpar, encoder_.get()));
    // Left to itself the muxer marks 4:2:2 pictures of 10 bits as AVC-Intra, which players then decode wrongly.
    if (isMov_ && encoder_->codec_id == AV_CODEC_ID_H264) stream_->codecpar->codec_tag = MKTAG('a', 'v', 'c', '1');
    // Allows that, and lossless audio in MP4, which players have long known.
    if (isMov_) muxer_->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
    stream_->time_base = encoder_->time_base;
    stream_->avg_frame_rate = encoder_->framerate;
    stream_->sample_aspect_ratio = encoder_->sample_aspect_ratio;
  }

  /// Audio, descriptions and what else lies beside the pictures in the source's file.
  void TakeOverFromSource(bool withAudio) {
    const bool cut = source_->range.has_value(), oneRun = !cut || source_->range->IsContiguous();
    audio_.emplace(source_->path, *muxer_, withAudio && oneRun);
    if (withAudio && !oneRun && audio_->SourceHasAudio())
      warnings_.push_back(path_ + ": the audio is left out, as the frames chosen are not one run");

    const AVFormatContext& file = audio_->Source();
    const AVStream& pictures = *file.streams[source_->stream];
    av_dict_copy(&muxer_->metadata, file.metadata, 0);
    av_dict_copy(&stream_->metadata, pictures.metadata, 0);
    for (AVDictionary** metadata : {&muxer_->metadata, &stream_->metadata})
      for (const char* key : {"major_brand", "minor_version", "compatible_brands", "encoder", "DURATION"})
        av_dict_set(metadata, key, nullptr, 0);
    if (cut)
      av_dict_set(&muxer_->metadata, "timecode", nullptr, 0), av_dict_set(&stream_->metadata, "timecode", nullptr, 0);
    stream_->disposition = pictures.disposition;
    for (int i = 0; i < pictures.nb_side_data; ++i) CopySideData(pictures.side_data[i]);

    // Streams cut out of a broadcast start anywhere.
    if ((file.iformat->flags & AVFMT_TS_DISCONT) != 0 && file.start_time != AV_NOPTS_VALUE) shift_ = -file.start_time;
  }

  void CopySideData(const AVPacketSideData& data) {
    const bool isTurn = data.type == AV_PKT_DATA_DISPLAYMATRIX;
    const bool isKept = isTurn ? turn_ == 1
                               : data.type == AV_PKT_DATA_MASTERING_DISPLAY_METADATA ||
                                     data.type == AV_PKT_DATA_CONTENT_LIGHT_LEVEL || data.type == AV_PKT_DATA_STEREO3D;
    if (!isKept) return;
    std::uint8_t* copy = av_stream_new_side_data(stream_, data.type, data.size);
    if (!copy) throw std::bad_alloc();
    std::copy_n(data.data, data.size, copy);
  }

  void WriteHeader() {
    Check(avio_open(&muxer_->pb, muxer_->url, AVIO_FLAG_WRITE));
    AVDictionary* settings = nullptr;
    const bool tagged = tags_.primaries != AVCOL_PRI_UNSPECIFIED || tags_.transfer != AVCOL_TRC_UNSPECIFIED ||
                        tags_.matrix != AVCOL_SPC_UNSPECIFIED;
    if (isMov_) av_dict_set(&settings, "movflags", tagged ? "+faststart+write_colr" : "+faststart-write_colr", 0);
    const int error = avformat_write_header(muxer_.get(), &settings);
    av_dict_free(&settings);
    if (error == AVERROR(EINVAL) && muxer_->nb_streams > 1)
      throw OutputError(path_ + ": this container does not take the input's audio: " + ErrorText(error) +
                        "; choose another, or leave the audio out");
    Check(error);
  }

  /// When the frame is shown and how long: as in the source; chosen frames that are not one run play one by one.
  void SetTime(const Frame& frame, AVFrame& picture) {
    std::int64_t time = count_, duration = 1;
    if (source_ && frame.origin) {
      const FrameOrigin& origin = *frame.origin;
      const AVRational unit = source_->timeBase;
      if (count_ == 0) SetStart(frame.number, origin.time);
      const bool oneRun = !source_->range || source_->range->IsContiguous();
      time = oneRun ? origin.time + av_rescale_q(shift_, kFfmpegTime, unit) : playedTime_;
      duration = std::max<std::int64_t>(origin.duration, 1);
      playedTime_ += duration;
      sourceEnd_ = av_rescale_q(origin.time + duration, unit, kFfmpegTime);
      if (steady_) {
        time = av_rescale_q(time, unit, encoder_->time_base);
        duration = 1;
      }
    }
    if (count_ > 0) time = std::max(time, lastTime_ + 1);
    lastTime_ = picture.pts = time;
    durations_[time] = duration;
  }

  void SetStart(std::int64_t number, std::int64_t time) {
    const bool startsLater = source_->range && number > 1;
    const std::int64_t start = av_rescale_q(time, source_->timeBase, kFfmpegTime);
    if (startsLater) {
      shift_ = -start;
      audio_->StartAt(start);
    }
    audio_->Shift(shift_);
  }

  /// @param picture  null at the end.
  void Encode(const AVFrame* picture) {
    Check(avcodec_send_frame(encoder_.get(), picture));
    const PacketPtr packet = NewPacket();
    for (;;) {
      const int error = avcodec_receive_packet(encoder_.get(), packet.get());
      if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return;
      Check(error);
      if (const auto duration = durations_.find(packet->pts); duration != durations_.end()) {
        packet->duration = duration->second;
        durations_.erase(duration);
      }
      if (audio_) {
        const std::int64_t time = av_rescale_q(packet->dts, encoder_->time_base, kFfmpegTime) - shift_;
        audio_->CopyUntil(time, [&](AVPacket& sound) { WritePacket(sound); });
      }
      av_packet_rescale_ts(packet.get(), encoder_->time_base, stream_->time_base);
      packet->stream_index = stream_->index;
      WritePacket(*packet);
    }
  }

  void WritePacket(AVPacket& packet) {
    Check(av_interleaved_write_frame(muxer_.get(), &packet));
    // What the disk refuses shows up here before it does in a result.
    Check(muxer_->pb->error);
  }

  std::string path_;
  bool overwrite_;
  bool isMov_;  // whether the container is MOV or its descendant MP4
  std::optional<VideoProperties> source_;
  std::optional<TemporaryFile> file_;  // outlives the muxer, which writes to it
  MuxerPtr muxer_;
  CodecPtr encoder_;
  AVStream* stream_ = nullptr;
  std::optional<FrameWriter> writer_;
  std::optional<AudioCopy> audio_;
  ColourTags tags_;
  int frameWidth_ = 0, frameHeight_ = 0;
  Orientation turn_ = 1;
  bool steady_ = false;
  bool interlaced_ = false;
  std::vector<std::string> warnings_;

  std::int64_t count_ = 0;
  std::int64_t lastTime_ = 0;
  std::int64_t playedTime_ = 0;
  std::int64_t shift_ = 0;      // from the source's times to ours, in AV_TIME_BASE units
  std::int64_t sourceEnd_ = 0;  // of the last frame, in the source's time
  std::map<std::int64_t, std::int64_t> durations_;
};

}  // namespace

std::unique_ptr<Output> OpenVideoOutput(const std::string& path, const std::string& extension, const Input& input,
                                        const OutputOptions& options) {
  return std::make_unique<VideoOutput>(path, extension, input, options);
}

}  // namespace quentara::media
