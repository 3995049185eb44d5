#include "media/orientation.h"

#include <cstring>

namespace quentara::media {

std::vector<std::uint8_t> TurnUpright(const std::vector<std::uint8_t>& pixels, int width, int height,
                                      std::size_t pixelBytes, Orientation orientation) {
  if (orientation <= 1 || orientation > 8) return pixels;
  const std::ptrdiff_t w = width, h = height, last = w * h - 1;
  // Where in the file the upright picture's first pixel is, and the steps to its right and lower neighbours.
  struct Walk {
    std::ptrdiff_t start, right, down;
  };
  const Walk walks[] = {{w - 1, -1, w},        {last, -1, -w}, {last - w + 1, 1, -w}, {0, w, 1},
                        {last - w + 1, -w, 1}, {last, -w, -1}, {w - 1, w, -1}};
  const Walk walk = walks[orientation - 2];
  const std::ptrdiff_t columns = SwapsSides(orientation) ? h : w, rows = SwapsSides(orientation) ? w : h;

  std::vector<std::uint8_t> upright(pixels.size());
  std::uint8_t* out = upright.data();
  for (std::ptrdiff_t y = 0; y < rows; ++y)
    for (std::ptrdiff_t x = 0; x < columns; ++x, out += pixelBytes)
      std::memcpy(out, pixels.data() + (walk.start + x * walk.right + y * walk.down) * pixelBytes, pixelBytes);
  return upright;
}

Frame TurnUpright(const Frame& frame, Orientation orientation) {
  Frame upright;
  upright.width = SwapsSides(orientation) ? frame.height : frame.width;
  upright.height = SwapsSides(orientation) ? frame.width : frame.height;
  upright.deep = frame.deep;
  upright.pixels = TurnUpright(frame.pixels, frame.width, frame.height, frame.deep ? 8 : 4, orientation);
  upright.number = frame.number;
  upright.origin = frame.origin;
  return upright;
}

Orientation ExifOrientation(const std::uint8_t* data, std::size_t size) {
  if (size < 8) return 1;
  const bool bigEndian = data[0] == 'M';
  const auto number = [&](std::size_t at, int bytes) {
    std::size_t value = 0;
    for (int i = 0; i < bytes; ++i) value = value << 8 | data[at + (bigEndian ? i : bytes - 1 - i)];
    return value;
  };
  const std::size_t directory = number(4, 4);
  if (directory > size - 2) return 1;
  constexpr std::size_t kOrientationTag = 0x112, kEntrySize = 12;
  const std::size_t count = number(directory, 2);
  for (std::size_t entry = directory + 2, i = 0; i < count && entry + kEntrySize <= size; ++i, entry += kEntrySize)
    if (number(entry, 2) == kOrientationTag) {
      const std::size_t value = number(entry + 8, 2);
      return value >= 1 && value <= 8 ? static_cast<Orientation>(value) : 1;
    }
  return 1;
}

Orientation MatrixOrientation(const std::int32_t* matrix) {
  const auto sign = [&](int i) { return (matrix[i] > 0) - (matrix[i] < 0); };
  const int a = sign(0), b = sign(1), c = sign(3), d = sign(4);
  struct Turn {
    int a, b, c, d;
  };
  // A point (x, y) of the file is shown at (a x + c y, b x + d y).
  constexpr Turn kTurns[] = {{1, 0, 0, 1}, {-1, 0, 0, 1}, {-1, 0, 0, -1}, {1, 0, 0, -1},
                             {0, 1, 1, 0}, {0, 1, -1, 0}, {0, -1, -1, 0}, {0, -1, 1, 0}};
  for (Orientation i = 0; i < 8; ++i)
    if (a == kTurns[i].a && b == kTurns[i].b && c == kTurns[i].c && d == kTurns[i].d) return i + 1;
  return 0;
}

}  // namespace quentara::media
