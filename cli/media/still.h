/// Pictures as their files have them, and as frames.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "media/frame.h"
#include "media/frame_origin.h"
#include "media/orientation.h"

namespace quentara::media {

/// A picture as its file has it: R, G, B or R, G, B, A of each pixel in turn, straight alpha, rows packed.
struct Still {
  int width = 0;
  int height = 0;
  int channels = 3;                   ///< 3 or 4
  bool deep = false;                  ///< 16 bits a sample in the machine's byte order, 0..65535; else 8, 0..255
  std::vector<std::uint8_t> samples;  ///< height * width * channels samples
  std::vector<std::uint8_t> iccProfile;
  Resolution resolution;
  Orientation orientation = 1;

  std::size_t PixelBytes() const { return static_cast<std::size_t>(channels) * (deep ? 2 : 1); }
  std::size_t RowBytes() const { return width * PixelBytes(); }
  /// Makes room for the samples.
  /// @throws std::runtime_error if the sides are not those of a picture that a host could hold.
  void Allocate();
};

enum class StillFormat { Png, Jpeg, Tiff, Ppm };

/// The format that a file's first bytes show, if it is one of ours.
std::optional<StillFormat> StillFormatOf(const std::vector<std::uint8_t>& content);
/// The format that the extension of a name asks for, if it is one of ours.
std::optional<StillFormat> StillFormatForName(const std::string& name);

/// @throws std::runtime_error saying what is wrong if the content is damaged, cut short or of a kind that is not read.
Still DecodeStill(StillFormat format, const std::vector<std::uint8_t>& content);
/// JPEG takes 8 bits, JPEG and PPM three channels; see ToStill.
std::vector<std::uint8_t> EncodeStill(StillFormat format, const Still& still);

/// The picture upright, as a frame. 65535 becomes 32768, with rounding to nearest in between.
Frame ToFrame(Still still);

/// The frame as a picture in its best form for `format`: of its depth where the format has it, with alpha if the source
/// had it or the frame is not opaque. An alpha sample that is still what the source's became is the source's again.
Still ToStill(const Frame& frame, StillFormat format);

}  // namespace quentara::media
