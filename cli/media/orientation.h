/// The eight ways a picture can lie in its file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "media/frame.h"

namespace quentara::media {

/// The numbering of the orientation tag of EXIF and TIFF; 1 is upright, 6 wants a quarter turn clockwise to be upright.
using Orientation = int;

constexpr bool SwapsSides(Orientation orientation) {
  return orientation >= 5;
}

/// Turns a picture upright.
/// @param pixels  height * width pixels of `pixelBytes` bytes each; width and height are those in the file.
/// @return the pixels of the upright picture, whose sides are swapped if SwapsSides.
std::vector<std::uint8_t> TurnUpright(const std::vector<std::uint8_t>& pixels, int width, int height,
                                      std::size_t pixelBytes, Orientation orientation);

/// The frame upright, with its number and origin.
Frame TurnUpright(const Frame& frame, Orientation orientation);

/// The orientation in a block of EXIF data (a TIFF header and what follows); 1 if there is none or it is not sound.
Orientation ExifOrientation(const std::uint8_t* data, std::size_t size);

/// The orientation that the display matrix of a video stream asks for (nine numbers in row order as FFmpeg has them);
/// 0 if it is not made of quarter turns and mirrorings.
Orientation MatrixOrientation(const std::int32_t* matrix);

}  // namespace quentara::media
