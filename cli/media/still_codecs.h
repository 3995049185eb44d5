/// The reader and writer of each picture format. All throw std::runtime_error with what is wrong.
#pragma once

#include <cstdint>
#include <vector>

#include "media/still.h"

namespace quentara::media {

/// By libpng. Grey and palette pictures come as RGB, a transparent colour as alpha.
Still DecodePng(const std::vector<std::uint8_t>& content);
std::vector<std::uint8_t> EncodePng(const Still& still);

/// By libjpeg. Written at quality 95 without chroma subsampling.
Still DecodeJpeg(const std::vector<std::uint8_t>& content);
std::vector<std::uint8_t> EncodeJpeg(const Still& still);

/// By libtiff. The first page of the file; grey and palette pictures come as RGB. Written with deflate compression.
Still DecodeTiff(const std::vector<std::uint8_t>& content);
std::vector<std::uint8_t> EncodeTiff(const Still& still);

/// The binary forms of Netpbm, P6 and (as RGB) P5, of any maximum value.
Still DecodePpm(const std::vector<std::uint8_t>& content);
std::vector<std::uint8_t> EncodePpm(const Still& still);

}  // namespace quentara::media
