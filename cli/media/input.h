/// Reading of pictures, numbered sequences and video.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "media/errors.h"
#include "media/frame.h"
#include "media/frame_range.h"

namespace quentara::media {

struct Rational {
  std::int64_t numerator;
  std::int64_t denominator;
};

/// The frame rate of numbered pictures, which have none of their own.
constexpr Rational kDefaultFrameRate{24, 1};

/// What is known before the first frame is read.
struct FrameInfo {
  int width;
  int height;
  bool deep;
  std::optional<std::int64_t> frameCount;  ///< of the frames that Next will give; of a video as its container states it
  Rational frameRate;                      ///< frames a second; of a video with a varying rate the average
  Rational pixelAspect;                    ///< width of a pixel to its height
  bool hasAlpha;                           ///< whether the source has an alpha channel
};

struct VideoProperties;

/// A row of frames, read one after another. One thread at a time; an output opened on it may be on another thread.
class Input {
 public:
  enum class Kind { Still, Sequence, Video };

  virtual ~Input() = default;
  virtual Kind GetKind() const = 0;
  virtual const std::string& Path() const = 0;
  virtual FrameInfo Info() const = 0;

  /// The next frame, none after the last.
  /// @throws InputError when it cannot be read whole, or when the input ends before a frame that was asked for.
  virtual std::optional<Frame> Next() = 0;

  /// What a user should be told about the input: gaps in a sequence, for instance. One line each.
  virtual std::vector<std::string> Warnings() const { return {}; }

  /// The numbers of the frames to come; none when only reading the input will tell.
  virtual std::optional<std::vector<std::int64_t>> Numbers() const { return std::nullopt; }
  /// The files that hold the input.
  virtual std::vector<std::string> Files() const { return {Path()}; }
  /// What a video output takes over from a video input; null for pictures.
  virtual const VideoProperties* Video() const { return nullptr; }
};

/// Opens a picture (PNG, JPEG, TIFF, PPM, told by its content), a numbered sequence of them (`frame.%04d.png`,
/// `frame.####.png` or `frame.[####].png`), or a video in any format that FFmpeg reads.
///
/// Frames of 8 bits a sample come as 8-bit frames, deeper ones as deep frames. Pictures are turned upright as their
/// orientation tag says; a video's rotation stays with the video. A sequence without a range is what its folder holds.
/// @param range  the frames to read; of a single picture it must be frame 1.
/// @throws InputError; among others when a sequence lacks a frame of the range.
std::unique_ptr<Input> OpenInput(const std::string& path, const std::optional<FrameRange>& range = std::nullopt);

}  // namespace quentara::media
