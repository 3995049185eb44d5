/// Writing of pictures, numbered sequences and video.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media/errors.h"
#include "media/frame.h"
#include "media/input.h"

namespace quentara::media {

struct OutputOptions {
  bool overwrite = false;                  ///< replace what exists; the input itself is never replaced
  Rational frameRate = kDefaultFrameRate;  ///< of a video made from pictures; a video keeps its own
  bool audio = true;                       ///< copy the audio of a video
};

/// A destination for frames, written in the order they come. Destroyed without Finish it removes what is incomplete.
class Output {
 public:
  virtual ~Output() = default;

  /// @throws OutputError, also when the frame does not fit those before it.
  virtual void Write(const Frame& frame) = 0;

  /// Completes the output and gives it its name.
  /// @throws OutputError
  virtual void Finish() = 0;

  /// What a user should be told at the start: alpha or audio that the output leaves out, for instance. One line each.
  virtual std::vector<std::string> Warnings() const { return {}; }
};

/// Opens the output for the frames of `input`: by the extension of `path` a picture (.png, .jpg, .tif, .ppm), a
/// numbered sequence of them (a pattern as OpenInput takes it) or a video (.mp4, .m4v, .mov, .mkv, .avi, .webm).
///
/// Files are written under a temporary name beside their place and renamed when complete: each picture when it is done,
/// a video by Finish.
/// A video keeps its frames' times, frame rate, pixel aspect, colour tags, rotation and audio (copied, not coded anew;
/// with frames chosen as one run it is cut to them, else left out). Where a container has no rotation, and in pictures,
/// the frames are turned instead.
/// @throws OutputError at once if the output exists, is the input, cannot be made from it or cannot be written.
std::unique_ptr<Output> OpenOutput(const std::string& path, const Input& input, const OutputOptions& options = {});

}  // namespace quentara::media
