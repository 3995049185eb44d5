/// Writing of pictures, numbered sequences and video.
#pragma once

#include <memory>
#include <string>

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
};

/// Opens the output for the frames of `input`: by the extension of `path` a picture (.png, .jpg, .tif, .ppm), a
/// numbered sequence of them (a pattern as OpenInput takes it) or a video (.mp4, .m4v, .mov, .mkv, .avi, .webm).
///
/// Files are written under a temporary name beside their place and renamed when complete: each picture when it is done,
/// a video by Finish.
/// @throws OutputError at once if the output exists, is the input, cannot be made from it or cannot be written.
std::unique_ptr<Output> OpenOutput(const std::string& path, const Input& input, const OutputOptions& options = {});

}  // namespace quentara::media
