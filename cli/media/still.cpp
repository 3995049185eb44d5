#include "media/still.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <stdexcept>

#include "media/still_codecs.h"

namespace quentara::media {
namespace {

/// 16-bit samples of files and those of deep frames: to nearest, so that white stays white.
std::uint16_t HostScale(std::uint32_t sample) {
  return static_cast<std::uint16_t>((sample * kDeepWhite + 32767u) / 65535u);
}
std::uint16_t FileScale(std::uint32_t sample) {
  return static_cast<std::uint16_t>((std::min<std::uint32_t>(sample, kDeepWhite) * 65535u + kDeepWhite / 2) /
                                    kDeepWhite);
}
std::uint8_t ByteScale(std::uint32_t sample) {
  return static_cast<std::uint8_t>((std::min<std::uint32_t>(sample, kDeepWhite) * 255u + kDeepWhite / 2) / kDeepWhite);
}

/// The data colour space in the header of an ICC profile.
bool IsRgbProfile(const std::vector<std::uint8_t>& profile) {
  return profile.size() >= 128 && std::memcmp(profile.data() + 16, "RGB ", 4) == 0;
}

bool IsOpaque(const Frame& frame) {
  const std::size_t count = static_cast<std::size_t>(frame.width) * frame.height;
  for (std::size_t i = 0; i < count; ++i)
    if (frame.deep ? frame.Deep(0)[4 * i] != kDeepWhite : frame.Bytes(0)[4 * i] != 255) return false;
  return true;
}

/// Puts the source's alpha samples back where the frame's are what they became.
void RestoreAlpha(const Frame& frame, const std::vector<std::uint16_t>& exactAlpha, std::uint16_t* samples) {
  const std::size_t count = static_cast<std::size_t>(frame.width) * frame.height;
  if (exactAlpha.size() != count) return;
  for (std::size_t i = 0; i < count; ++i)
    if (frame.Deep(0)[4 * i] == HostScale(exactAlpha[i])) samples[4 * i + 3] = exactAlpha[i];
}

/// A, R, G, B of each pixel to R, G, B and perhaps A.
template <class In, class Out, class Scale>
void Reorder(const In* frame, std::size_t count, int channels, Out* out, Scale scale) {
  for (std::size_t i = 0; i < count; ++i, frame += 4, out += channels) {
    for (int c = 0; c < 3; ++c) out[c] = scale(frame[c + 1]);
    if (channels == 4) out[3] = scale(frame[0]);
  }
}

}  // namespace

void Still::Allocate() {
  constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;
  if (width < 1 || height < 1 || static_cast<std::int64_t>(width) * height > kMostPixels)
    throw std::runtime_error("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                             " pixels is not read");
  samples.resize(height * RowBytes());
}

std::optional<StillFormat> StillFormatOf(const std::vector<std::uint8_t>& content) {
  const auto starts = [&](const char* magic, std::size_t size) {
    return content.size() >= size && std::memcmp(content.data(), magic, size) == 0;
  };
  if (starts("\x89PNG", 4)) return StillFormat::Png;
  if (starts("\xff\xd8\xff", 3)) return StillFormat::Jpeg;
  if (starts("II*\0", 4) || starts("MM\0*", 4) || starts("II+\0", 4) || starts("MM\0+", 4)) return StillFormat::Tiff;
  if (content.size() >= 3 && content[0] == 'P' && content[1] >= '1' && content[1] <= '6' && std::isspace(content[2]))
    return StillFormat::Ppm;
  return std::nullopt;
}

std::optional<StillFormat> StillFormatForName(const std::string& name) {
  std::string extension = name.substr(std::min(name.rfind('.'), name.size()));
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return std::tolower(c); });
  if (extension == ".png") return StillFormat::Png;
  if (extension == ".jpg" || extension == ".jpeg") return StillFormat::Jpeg;
  if (extension == ".tif" || extension == ".tiff") return StillFormat::Tiff;
  if (extension == ".ppm") return StillFormat::Ppm;
  return std::nullopt;
}

Still DecodeStill(StillFormat format, const std::vector<std::uint8_t>& content) {
  switch (format) {
    case StillFormat::Png:
      return DecodePng(content);
    case StillFormat::Jpeg:
      return DecodeJpeg(content);
    case StillFormat::Tiff:
      return DecodeTiff(content);
    case StillFormat::Ppm:
      break;
  }
  return DecodePpm(content);
}

std::vector<std::uint8_t> EncodeStill(StillFormat format, const Still& still) {
  switch (format) {
    case StillFormat::Png:
      return EncodePng(still);
    case StillFormat::Jpeg:
      return EncodeJpeg(still);
    case StillFormat::Tiff:
      return EncodeTiff(still);
    case StillFormat::Ppm:
      break;
  }
  return EncodePpm(still);
}

Frame ToFrame(Still still) {
  if (still.orientation != 1) {
    still.samples = TurnUpright(still.samples, still.width, still.height, still.PixelBytes(), still.orientation);
    if (SwapsSides(still.orientation)) {
      std::swap(still.width, still.height);
      std::swap(still.resolution.x, still.resolution.y);
    }
  }
  Frame frame = BlankFrame(still.width, still.height, still.deep);
  const auto origin = std::make_shared<FrameOrigin>();
  origin->hasAlpha = still.channels == 4;
  origin->resolution = still.resolution;
  // The frame is RGB whatever the file was; a profile of grey or palette colours would say something else.
  if (IsRgbProfile(still.iccProfile)) origin->iccProfile = std::move(still.iccProfile);

  const std::size_t count = static_cast<std::size_t>(still.width) * still.height;
  const int channels = still.channels;
  if (still.deep) {
    const auto* in = reinterpret_cast<const std::uint16_t*>(still.samples.data());
    if (channels == 4) origin->exactAlpha.reserve(count);
    std::uint16_t* out = frame.Deep(0);
    for (std::size_t i = 0; i < count; ++i, in += channels, out += 4) {
      out[0] = channels == 4 ? HostScale(in[3]) : kDeepWhite;
      for (int c = 0; c < 3; ++c) out[c + 1] = HostScale(in[c]);
      if (channels == 4) origin->exactAlpha.push_back(in[3]);
    }
  } else {
    const std::uint8_t* in = still.samples.data();
    std::uint8_t* out = frame.Bytes(0);
    for (std::size_t i = 0; i < count; ++i, in += channels, out += 4) {
      out[0] = channels == 4 ? in[3] : 255;
      std::copy_n(in, 3, out + 1);
    }
  }
  frame.origin = origin;
  return frame;
}

Still ToStill(const Frame& frame, StillFormat format) {
  Still still;
  still.width = frame.width;
  still.height = frame.height;
  still.deep = frame.deep && format != StillFormat::Jpeg;
  const bool canHoldAlpha = format == StillFormat::Png || format == StillFormat::Tiff;
  if (canHoldAlpha && ((frame.origin && frame.origin->hasAlpha) || !IsOpaque(frame))) still.channels = 4;
  if (frame.origin) {
    still.iccProfile = frame.origin->iccProfile;
    still.resolution = frame.origin->resolution;
  }
  still.Allocate();

  const std::size_t count = static_cast<std::size_t>(frame.width) * frame.height;
  if (still.deep) {
    auto* out = reinterpret_cast<std::uint16_t*>(still.samples.data());
    Reorder(frame.Deep(0), count, still.channels, out, FileScale);
    if (still.channels == 4 && frame.origin) RestoreAlpha(frame, frame.origin->exactAlpha, out);
  } else if (frame.deep) {
    Reorder(frame.Deep(0), count, still.channels, still.samples.data(), ByteScale);
  } else {
    Reorder(frame.Bytes(0), count, still.channels, still.samples.data(), [](std::uint8_t sample) { return sample; });
  }
  return still;
}

}  // namespace quentara::media
