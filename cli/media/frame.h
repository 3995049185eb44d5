/// A picture on its way from an input through the effect to an output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quentara::media {

/// Full scale of the samples of a deep frame: 0 is black, 32768 white.
constexpr int kDeepWhite = 32768;

struct FrameOrigin;

/// Samples A, R, G, B of each pixel in turn, straight alpha, rows packed from the top.
struct Frame {
  int width = 0;
  int height = 0;
  bool deep = false;                 ///< samples of 16 bits in the machine's byte order, 0..32768; else 8 bits, 0..255
  std::vector<std::uint8_t> pixels;  ///< height * RowBytes() bytes
  std::int64_t number = 1;           ///< in a sequence the number in the file's name, in a video counted from 1

  /// What an output needs of the frame's source beside its pixels. A frame made from another one takes it over.
  std::shared_ptr<const FrameOrigin> origin;

  std::size_t RowBytes() const { return static_cast<std::size_t>(width) * (deep ? 8 : 4); }
  std::uint16_t* Deep(int y) { return reinterpret_cast<std::uint16_t*>(pixels.data() + y * RowBytes()); }
  const std::uint16_t* Deep(int y) const {
    return reinterpret_cast<const std::uint16_t*>(pixels.data() + y * RowBytes());
  }
  std::uint8_t* Bytes(int y) { return pixels.data() + y * RowBytes(); }
  const std::uint8_t* Bytes(int y) const { return pixels.data() + y * RowBytes(); }
};

/// A frame with all samples 0.
inline Frame BlankFrame(int width, int height, bool deep) {
  Frame frame;
  frame.width = width;
  frame.height = height;
  frame.deep = deep;
  frame.pixels.resize(height * frame.RowBytes());
  return frame;
}

/// A frame with all samples 0 that stands for `source`: its size, depth, number and origin.
inline Frame BlankLike(const Frame& source) {
  Frame frame = BlankFrame(source.width, source.height, source.deep);
  frame.number = source.number;
  frame.origin = source.origin;
  return frame;
}

}  // namespace quentara::media
