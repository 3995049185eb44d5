#include "cli/clip_maker.h"

#include <cmath>
#include <map>
#include <stdexcept>

namespace quentara::media {
namespace {

void Check(int error) {
  if (error < 0) throw std::runtime_error(ErrorText(error));
}

/// A picture that codecs like: slow waves that move with time.
FramePtr MakePicture(const ClipOptions& options, int index) {
  FramePtr picture = NewFrame();
  picture->width = options.width;
  picture->height = options.height;
  picture->format = options.format;
  Check(av_frame_get_buffer(picture.get(), 0));
  const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(options.format);
  const bool deep = layout->comp[0].depth > 8;
  for (int plane = 0; plane < 3; ++plane) {
    const int w = plane ? -(-options.width >> layout->log2_chroma_w) : options.width;
    const int h = plane ? -(-options.height >> layout->log2_chroma_h) : options.height;
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const double wave = std::sin(0.11 * (x + index) * options.width / w + plane) + std::cos(0.07 * y - 0.2 * index);
        const int value = static_cast<int>(std::lround((128 + (plane ? 11 : 22) * wave) * (deep ? 4 : 1)));
        std::uint8_t* row = picture->data[plane] + y * picture->linesize[plane];
        if (deep)
          reinterpret_cast<std::uint16_t*>(row)[x] = static_cast<std::uint16_t>(value);
        else
          row[x] = static_cast<std::uint8_t>(value);
      }
  }
  return picture;
}

CodecPtr OpenAudioEncoder(bool globalHeader) {
  const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
  CodecPtr encoder(avcodec_alloc_context3(codec));
  encoder->sample_rate = 48000;
  encoder->sample_fmt = AV_SAMPLE_FMT_FLTP;
  encoder->time_base = {1, 48000};
  av_channel_layout_default(&encoder->ch_layout, 1);
  if (globalHeader) encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  Check(avcodec_open2(encoder.get(), codec, nullptr));
  return encoder;
}

/// Encodes what `frame` is (null: the end) and writes what comes out.
void Encode(AVCodecContext& encoder, const AVFrame* frame, AVFormatContext& muxer, AVStream& stream,
            std::int64_t lastDuration = 0) {
  Check(avcodec_send_frame(&encoder, frame));
  const PacketPtr packet = NewPacket();
  while (avcodec_receive_packet(&encoder, packet.get()) >= 0) {
    packet->stream_index = stream.index;
    if (packet->duration == 0) packet->duration = lastDuration;
    av_packet_rescale_ts(packet.get(), encoder.time_base, stream.time_base);
    Check(av_interleaved_write_frame(&muxer, packet.get()));
  }
}

void WriteAudio(AVCodecContext& encoder, AVFormatContext& muxer, AVStream& stream, double seconds) {
  const FramePtr sound = NewFrame();
  sound->format = encoder.sample_fmt;
  sound->nb_samples = encoder.frame_size;
  av_channel_layout_copy(&sound->ch_layout, &encoder.ch_layout);
  Check(av_frame_get_buffer(sound.get(), 0));
  for (std::int64_t start = 0; start < seconds * encoder.sample_rate; start += encoder.frame_size) {
    Check(av_frame_make_writable(sound.get()));
    sound->pts = start;
    auto* samples = reinterpret_cast<float*>(sound->data[0]);
    for (int i = 0; i < encoder.frame_size; ++i)
      samples[i] = 0.3f * std::sin((0.02f + 0.01f * stream.index) * static_cast<float>(start + i));
    Encode(encoder, sound.get(), muxer, stream);
  }
  Encode(encoder, nullptr, muxer, stream);
}

}  // namespace

void MakeClip(const std::string& path, const ClipOptions& options) {
  SilenceFfmpeg();
  AVFormatContext* muxer = nullptr;
  Check(avformat_alloc_output_context2(&muxer, nullptr, nullptr, path.c_str()));
  const bool globalHeader = (muxer->oformat->flags & AVFMT_GLOBALHEADER) != 0;
  const AVCodec* codec = avcodec_find_encoder_by_name(options.encoder);
  CodecPtr encoder(avcodec_alloc_context3(codec));
  encoder->width = options.width;
  encoder->height = options.height;
  encoder->pix_fmt = options.format;
  encoder->time_base = options.timeBase;
  encoder->sample_aspect_ratio = options.aspect;
  encoder->color_primaries = options.primaries;
  encoder->color_trc = options.transfer;
  encoder->colorspace = options.matrix;
  encoder->color_range = options.range;
  encoder->chroma_sample_location = options.chroma;
  if (globalHeader) encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  AVDictionary* settings = nullptr;
  av_dict_parse_string(&settings, options.settings, "=", ":", 0);
  Check(avcodec_open2(encoder.get(), codec, &settings));
  av_dict_free(&settings);

  AVStream* pictures = avformat_new_stream(muxer, nullptr);
  Check(avcodec_parameters_from_context(pictures->codecpar, encoder.get()));
  pictures->time_base = options.timeBase;
  pictures->sample_aspect_ratio = options.aspect;
  if (options.rotation != 0)
    av_display_rotation_set(
        reinterpret_cast<std::int32_t*>(av_stream_new_side_data(pictures, AV_PKT_DATA_DISPLAYMATRIX, 36)),
        options.rotation);
  std::vector<std::pair<CodecPtr, AVStream*>> sounds;
  for (int i = 0; i < options.audioStreams; ++i) {
    sounds.emplace_back(OpenAudioEncoder(globalHeader), avformat_new_stream(muxer, nullptr));
    Check(avcodec_parameters_from_context(sounds.back().second->codecpar, sounds.back().first.get()));
    sounds.back().second->time_base = {1, 48000};
    av_dict_set(&sounds.back().second->metadata, "language", i == 0 ? "eng" : "dan", 0);
  }
  Check(avio_open(&muxer->pb, path.c_str(), AVIO_FLAG_WRITE));
  Check(avformat_write_header(muxer, nullptr));
  const std::size_t count = options.times.size();
  const std::int64_t lastDuration = count > 1 ? options.times[count - 1] - options.times[count - 2] : 1;
  for (std::size_t i = 0; i < count; ++i) {
    const FramePtr picture = MakePicture(options, static_cast<int>(i));
    picture->pts = options.times[i];
    Encode(*encoder, picture.get(), *muxer, *pictures, lastDuration);
  }
  Encode(*encoder, nullptr, *muxer, *pictures, lastDuration);
  const double seconds = static_cast<double>(options.times.back() + lastDuration) * av_q2d(options.timeBase);
  for (auto& [soundEncoder, stream] : sounds) WriteAudio(*soundEncoder, *muxer, *stream, seconds);
  Check(av_write_trailer(muxer));
  avio_closep(&muxer->pb);
  avformat_free_context(muxer);
}

ClipFacts ReadClip(const std::string& path) {
  const DemuxerPtr demuxer = OpenDemuxer(path);
  const int index = av_find_best_stream(demuxer.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  const AVStream& stream = *demuxer->streams[index];
  const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
  const CodecPtr decoder(avcodec_alloc_context3(codec));
  Check(avcodec_parameters_to_context(decoder.get(), stream.codecpar));
  Check(avcodec_open2(decoder.get(), codec, nullptr));
  ClipFacts facts{};
  facts.timeBase = stream.time_base;
  facts.rate = stream.avg_frame_rate;
  facts.duration = static_cast<double>(demuxer->duration) / AV_TIME_BASE;
  facts.codec = stream.codecpar->codec_id;
  if (const std::uint8_t* matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr))
    facts.rotation =
        static_cast<int>(std::lround(-av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix))));
  std::map<int, std::size_t> sounds;
  for (unsigned i = 0; i < demuxer->nb_streams; ++i)
    if (demuxer->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
      sounds.emplace(i, sounds.size());
      const AVDictionaryEntry* language = av_dict_get(demuxer->streams[i]->metadata, "language", nullptr, 0);
      facts.audioLanguages.push_back(language ? language->value : "");
    }
  facts.audio.resize(sounds.size());
  facts.audioStarts.assign(sounds.size(), -1e9);

  const auto takePictures = [&] {
    const FramePtr frame = NewFrame();
    while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) {
      facts.times.push_back(frame->best_effort_timestamp);
      facts.format = static_cast<AVPixelFormat>(frame->format);
      facts.width = frame->width;
      facts.height = frame->height;
      facts.aspect = av_guess_sample_aspect_ratio(demuxer.get(), demuxer->streams[index], frame.get());
      facts.primaries = frame->color_primaries;
      facts.transfer = frame->color_trc;
      facts.matrix = frame->colorspace;
      facts.range = frame->color_range;
      facts.chroma = frame->chroma_location;
      const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(facts.format);
      auto& picture = facts.pictures.emplace_back();
      for (int plane = 0; plane < layout->nb_components; ++plane) {
        auto& samples = picture.emplace_back();
        const bool isChroma = plane == 1 || plane == 2;
        const int w = isChroma ? -(-facts.width >> layout->log2_chroma_w) : facts.width;
        const int h = isChroma ? -(-facts.height >> layout->log2_chroma_h) : facts.height;
        std::vector<std::uint16_t> line(w);
        for (int y = 0; y < h; ++y) {
          av_read_image_line2(line.data(), const_cast<const std::uint8_t**>(frame->data), frame->linesize, layout, 0, y,
                              plane, w, 0, 2);
          samples.insert(samples.end(), line.begin(), line.end());
        }
      }
    }
  };
  const PacketPtr packet = NewPacket();
  for (; av_read_frame(demuxer.get(), packet.get()) >= 0; av_packet_unref(packet.get())) {
    if (packet->stream_index == index) {
      Check(avcodec_send_packet(decoder.get(), packet.get()));
      takePictures();
    } else if (const auto sound = sounds.find(packet->stream_index); sound != sounds.end()) {
      auto& packets = facts.audio[sound->second];
      if (packets.empty())
        facts.audioStarts[sound->second] = packet->pts * av_q2d(demuxer->streams[packet->stream_index]->time_base);
      packets.emplace_back(packet->data, packet->data + packet->size);
    }
  }
  Check(avcodec_send_packet(decoder.get(), nullptr));
  takePictures();
  return facts;
}

std::vector<double> Seconds(const ClipFacts& facts) {
  std::vector<double> seconds;
  for (const std::int64_t time : facts.times)
    seconds.push_back(static_cast<double>(time - facts.times[0]) * av_q2d(facts.timeBase));
  return seconds;
}

}  // namespace quentara::media
