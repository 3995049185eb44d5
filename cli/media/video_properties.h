/// What a video output takes over from a video input.
#pragma once

#include <optional>
#include <string>

#include "media/colour_conversion.h"
#include "media/ffmpeg.h"
#include "media/frame_range.h"
#include "media/orientation.h"

namespace quentara::media {

struct VideoProperties {
  std::string path;
  int stream;            ///< index of the picture stream in the file
  AVRational timeBase;   ///< of FrameOrigin::time and duration
  AVRational frameRate;  ///< average
  AVPixelFormat format;  ///< of the decoded pictures
  ColourTags tags;
  Orientation orientation;  ///< as the display matrix asks for; 0 if it is not made of quarter turns
  bool interlaced;
  std::optional<FrameRange> range;  ///< the frames that were asked for, none for all
};

}  // namespace quentara::media
