#include "cli/clip_maker.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>

namespace quentara::media {
namespace {

int Check(int result) {
  if (result < 0) throw std::runtime_error(ErrorText(result));
  return result;
}

const AVPixFmtDescriptor* LayoutOf(const AVFrame& picture) {
  return av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
}

std::pair<int, int> PlaneSize(const AVFrame& picture, int plane) {
  const bool isChroma = plane == 1 || plane == 2;
  return {AV_CEIL_RSHIFT(picture.width, isChroma ? LayoutOf(picture)->log2_chroma_w : 0),
          AV_CEIL_RSHIFT(picture.height, isChroma ? LayoutOf(picture)->log2_chroma_h : 0)};
}

/// A picture that codecs like: slow waves that move with time.
FramePtr MakePicture(const AVCodecContext& encoder, int index) {
  FramePtr picture = NewFrame();
  picture->width = encoder.width;
  picture->height = encoder.height;
  picture->format = encoder.pix_fmt;
  Check(av_frame_get_buffer(picture.get(), 0));
  const AVPixFmtDescriptor* layout = LayoutOf(*picture);
  for (int plane = 0; plane < 3; ++plane) {
    const auto [width, height] = PlaneSize(*picture, plane);
    std::vector<std::uint16_t> line(width);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const double wave = std::sin(0.11 * (x + index) * encoder.width / width + plane);
        const double value = 128 + (plane ? 11 : 22) * (wave + std::cos(0.07 * y - 0.2 * index));
        line[x] = static_cast<std::uint16_t>(std::lround(std::ldexp(value, layout->comp[0].depth - 8)));
      }
      // Deep samples are added to the bits that are there.
      std::fill_n(picture->data[plane] + y * picture->linesize[plane], picture->linesize[plane], 0);
      av_write_image_line2(line.data(), picture->data, picture->linesize, layout, 0, y, plane, width, 2);
    }
  }
  return picture;
}

constexpr int kSampleRate = 48000, kPacketSamples = 1024;

AVStream* AddAudio(AVFormatContext& muxer, const char* language) {
  AVStream* stream = avformat_new_stream(&muxer, nullptr);
  AVCodecParameters& parameters = *stream->codecpar;
  parameters.codec_type = AVMEDIA_TYPE_AUDIO;
  parameters.codec_id = AV_CODEC_ID_AAC;
  parameters.sample_rate = kSampleRate;
  parameters.frame_size = kPacketSamples;
  av_channel_layout_default(&parameters.ch_layout, 1);
  parameters.extradata_size = 2;
  parameters.extradata = static_cast<std::uint8_t*>(av_mallocz(2 + AV_INPUT_BUFFER_PADDING_SIZE));
  parameters.extradata[0] = 0x11, parameters.extradata[1] = 0x88;  // AAC-LC, 48 kHz, one channel
  stream->time_base = {1, kSampleRate};
  av_dict_set(&stream->metadata, "language", language, 0);
  return stream;
}

/// Packets of noise, as nobody decodes them. The first comes early, as that of an encoder with a delay does.
void WriteAudio(AVFormatContext& muxer, AVStream& stream, double seconds) {
  std::mt19937 rng(stream.index);
  const PacketPtr packet = NewPacket();
  for (std::int64_t time = -kPacketSamples; time < seconds * kSampleRate; time += kPacketSamples) {
    Check(av_new_packet(packet.get(), 100 + rng() % 100));
    std::generate_n(packet->data, packet->size, [&] { return static_cast<std::uint8_t>(rng()); });
    packet->pts = packet->dts = time;
    packet->duration = kPacketSamples;
    packet->stream_index = stream.index;
    av_packet_rescale_ts(packet.get(), {1, kSampleRate}, stream.time_base);
    Check(av_interleaved_write_frame(&muxer, packet.get()));
  }
}

}  // namespace

std::vector<FramePtr> MakeClip(const std::string& path, const ClipOptions& options) {
  SilenceFfmpeg();
  AVFormatContext* muxer = nullptr;
  Check(avformat_alloc_output_context2(&muxer, nullptr, nullptr, path.c_str()));
  const AVCodec* codec = avcodec_find_encoder_by_name("libx264");
  const CodecPtr encoder(avcodec_alloc_context3(codec));
  encoder->width = 96;
  encoder->height = 64;
  encoder->pix_fmt = AV_PIX_FMT_YUV420P;
  encoder->time_base = {1, 12800};
  encoder->sample_aspect_ratio = {1, 1};
  encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  av_opt_set_int(encoder->priv_data, "qp", 0, 0);
  options.setUp(*encoder);
  Check(avcodec_open2(encoder.get(), codec, nullptr));

  AVStream* pictures = avformat_new_stream(muxer, nullptr);
  Check(avcodec_parameters_from_context(pictures->codecpar, encoder.get()));
  pictures->time_base = encoder->time_base;
  pictures->sample_aspect_ratio = encoder->sample_aspect_ratio;
  if (options.rotation != 0)
    av_display_rotation_set(
        reinterpret_cast<std::int32_t*>(av_stream_new_side_data(pictures, AV_PKT_DATA_DISPLAYMATRIX, 36)),
        options.rotation);
  std::vector<AVStream*> sounds;
  for (const char* language : options.audio) sounds.push_back(AddAudio(*muxer, language));
  Check(avio_open(&muxer->pb, path.c_str(), AVIO_FLAG_WRITE));
  Check(avformat_write_header(muxer, nullptr));

  const std::size_t count = options.times.size();
  const std::int64_t lastDuration = options.times[count - 1] - options.times[count - 2];
  const PacketPtr packet = NewPacket();
  std::vector<FramePtr> made;
  for (std::size_t i = 0; i <= count; ++i) {
    if (i < count) made.push_back(MakePicture(*encoder, static_cast<int>(i)));
    if (i < count) made[i]->pts = options.times[i];
    Check(avcodec_send_frame(encoder.get(), i < count ? made[i].get() : nullptr));
    while (avcodec_receive_packet(encoder.get(), packet.get()) >= 0) {
      packet->duration = lastDuration;
      av_packet_rescale_ts(packet.get(), encoder->time_base, pictures->time_base);
      Check(av_interleaved_write_frame(muxer, packet.get()));
    }
  }
  const double seconds = static_cast<double>(options.times.back() + lastDuration) * av_q2d(encoder->time_base);
  for (AVStream* stream : sounds) WriteAudio(*muxer, *stream, seconds);
  Check(av_write_trailer(muxer));
  avio_closep(&muxer->pb);
  avformat_free_context(muxer);
  return made;
}

Clip ReadClip(const std::string& path) {
  Clip clip{OpenDemuxer(path), nullptr, {}, 0, {}, {}};
  clip.stream = clip.file->streams[0];
  clip.audio.resize(clip.file->nb_streams - 1);
  clip.audioStarts.resize(clip.audio.size());
  if (const std::uint8_t* matrix = av_stream_get_side_data(clip.stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr))
    clip.rotation = -static_cast<int>(av_display_rotation_get(reinterpret_cast<const std::int32_t*>(matrix)));
  const PacketPtr packet = NewPacket();
  for (; av_read_frame(clip.file.get(), packet.get()) >= 0; av_packet_unref(packet.get())) {
    const AVRational unit = clip.file->streams[packet->stream_index]->time_base;
    const std::int64_t start = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
    const double time = static_cast<double>(start) * av_q2d(unit);
    if (packet->stream_index == 0) {
      clip.times.push_back(time);
      continue;
    }
    auto& packets = clip.audio[packet->stream_index - 1];
    if (packets.empty()) clip.audioStarts[packet->stream_index - 1] = time;
    packets.emplace_back(packet->data, packet->data + packet->size);
  }
  std::sort(clip.times.begin(), clip.times.end());
  return clip;
}

std::vector<double> Samples(const AVFrame& picture, int plane) {
  const auto [width, height] = PlaneSize(picture, plane);
  std::vector<std::uint16_t> line(width);
  std::vector<double> samples;
  for (int y = 0; y < height; ++y) {
    av_read_image_line2(line.data(), const_cast<const std::uint8_t**>(picture.data), picture.linesize,
                        LayoutOf(picture), 0, y, plane, width, 0, 2);
    for (const int sample : line) samples.push_back(std::ldexp(sample, 8 - LayoutOf(picture)->comp[0].depth));
  }
  return samples;
}

}  // namespace quentara::media
