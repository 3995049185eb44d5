#include "imageops/transpose.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>

namespace quentara {
namespace {

constexpr int kTile = 16;

void TransposeTile(const unsigned char* from, std::ptrdiff_t fromStride, unsigned char* to, std::ptrdiff_t toStride) {
  __m128i rows[kTile], mixed[kTile];
  for (int i = 0; i < kTile; ++i) rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i * fromStride));
  // Four perfect shuffles of the rows turn the tile.
  for (int round = 0; round < 4; ++round) {
    for (int i = 0; i < kTile / 2; ++i) {
      mixed[2 * i] = _mm_unpacklo_epi8(rows[i], rows[i + kTile / 2]);
      mixed[2 * i + 1] = _mm_unpackhi_epi8(rows[i], rows[i + kTile / 2]);
    }
    std::copy_n(mixed, kTile, rows);
  }
  for (int i = 0; i < kTile; ++i) _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i * toStride), rows[i]);
}

}  // namespace

BytePlane Transpose(const BytePlane& plane) {
  const int height = plane.rows(), width = plane.cols();
  BytePlane result(width, height);
  for (int y = 0; y < height; y += kTile)
    for (int x = 0; x < width; x += kTile) {
      if (y + kTile <= height && x + kTile <= width) {
        TransposeTile(Row(plane, y) + x, width, Row(result, x) + y, height);
        continue;
      }
      for (int j = y; j < std::min(y + kTile, height); ++j)
        for (int i = x; i < std::min(x + kTile, width); ++i) Row(result, i)[j] = Row(plane, j)[i];
    }
  return result;
}

}  // namespace quentara
