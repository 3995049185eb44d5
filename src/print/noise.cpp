#include "print/noise.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "render/scratch.h"

namespace quentara {
namespace {

using Byte = unsigned char;
using Word = std::uint32_t;

// The finaliser of MurmurHash3 (Appleby): one to one, so that no two numbers give one word.
constexpr Word Mixed(Word h) {
  h = (h ^ (h >> 16)) * 0x85EBCA6Bu;
  h = (h ^ (h >> 13)) * 0xC2B2AE35u;
  return h ^ (h >> 16);
}

// Four words to begin with, then entry i is the mix of base + i.
template <std::size_t size>
constexpr std::array<Word, size> MakeTable(const std::array<Word, 4>& begin, Word base) {
  std::array<Word, size> table{};
  for (std::size_t i = 0; i < size; ++i) table[i] = i < begin.size() ? begin[i] : Mixed(base + static_cast<Word>(i));
  return table;
}

constexpr auto kFirst = MakeTable<256>({0xF6FD8F0E, 0xA747FA37, 0xFB141A40, 0x177970A7}, 0);
constexpr auto kSecond = MakeTable<128>({0x3143C17F, 0x157DD898, 0xB2E0569D, 0x5A1E4D17}, 256);

Word RotatedLeft(Word h, int bits) {
  return (h << bits) | (h >> (32 - bits));
}

Word HashByte(Word h, Word byte) {
  h += kFirst[byte];
  h ^= RotatedLeft(h, 3);
  h += kSecond[h >> 25];
  h ^= RotatedLeft(h, 14);
  return h + 1783936964u;
}

Word HashUpperBytes(Word x) {
  return HashByte(HashByte(HashByte(0, x >> 24), x >> 16 & 255), x >> 8 & 255);
}

int HalfWay(int a, int b, int c, int d) {
  return 5 * (b + c) - (a + d);
}

Byte Limited(int value) {
  return static_cast<Byte>(std::clamp(value, 0, 255));
}

// `row` holds samples scaled by 2^shift; so does no sample of the result.
template <class Sample>
void EnlargeRow(const Sample* row, int shift, Byte* __restrict enlarged, int width) {
  const auto enlarge = [=](int x, int a, int b, int c, int d) {
    enlarged[2 * x] = Limited(HalfWay(a, b, c, d) >> (shift + 3));
    enlarged[2 * x + 1] = Limited(c >> shift);
  };
  const auto atEdge = [&](int x) {
    enlarge(x, row[std::max(x - 2, 0)], row[std::max(x - 1, 0)], row[x], row[std::min(x + 1, width - 1)]);
  };
  const int inner = std::min(2, width);
  for (int x = 0; x < inner; ++x) atEdge(x);
  for (int x = inner; x < width - 1; ++x) enlarge(x, row[x - 2], row[x - 1], row[x], row[x + 1]);
  if (width > inner) atEdge(width - 1);
}

// Blackens what its noise is above of: by masks, as half the branches would miss.
void DitherRow(const Byte* noise, Byte* __restrict samples, int width) {
  for (int x = 0; x < width; ++x) samples[x] &= static_cast<Byte>(noise[x] > samples[x] ? 0 : 255);
}

// Gives samples scaled by 8.
void ShrinkRow(const Byte* row, std::int16_t* __restrict shrunk, int width) {
  shrunk[0] = static_cast<std::int16_t>(HalfWay(row[0], row[0], row[0], row[1]));
  for (int x = 1; x < width; ++x)
    shrunk[x] = static_cast<std::int16_t>(HalfWay(row[2 * x - 2], row[2 * x - 1], row[2 * x], row[2 * x + 1]));
}

/// The rows of a dithered plane of twice the size, from the top down, of which the last four are kept.
class DitheredRows {
 public:
  DitheredRows(const BytePlane& plane, Word seed)
      : plane_(plane),
        width_(plane.cols()),
        seed_(seed),
        between_(Size(1)),
        enlarged_(Size(2)),
        noise_(Size(2)),
        shrunk_(Size(4)) {}

  /// Dithers row `y` and shrinks it along itself; every row, in order.
  void Dither(int y) {
    Enlarge(y);
    NoiseRun(seed_ + static_cast<Word>(y) * static_cast<Word>(2 * width_), 2 * width_, noise_.data());
    DitherRow(noise_.data(), enlarged_.data(), 2 * width_);
    ShrinkRow(enlarged_.data(), Shrunk(y), width_);
  }

  /// Row `y` of the plane's own size, once the enlarged row 2 * y + 1 is done.
  void Shrink(int y, Byte* __restrict result) {
    const std::int16_t* const a = Shrunk(std::max(2 * y - 2, 0));
    const std::int16_t* const b = Shrunk(std::max(2 * y - 1, 0));
    const std::int16_t *const c = Shrunk(2 * y), *const d = Shrunk(2 * y + 1);
    for (int x = 0; x < width_; ++x) result[x] = Limited(HalfWay(a[x], b[x], c[x], d[x]) >> 6);
  }

 private:
  std::size_t Size(int rows) const { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(width_); }

  void Enlarge(int y) {
    const int row = y / 2;
    if (y % 2 == 1) {
      EnlargeRow(Row(plane_, row), 0, enlarged_.data(), width_);
      return;
    }
    const Byte* const a = Row(plane_, std::max(row - 2, 0));
    const Byte* const b = Row(plane_, std::max(row - 1, 0));
    const Byte *const c = Row(plane_, row), *const d = Row(plane_, std::min(row + 1, plane_.rows() - 1));
    std::int16_t* const between = between_.data();
    for (int x = 0; x < width_; ++x) between[x] = static_cast<std::int16_t>(HalfWay(a[x], b[x], c[x], d[x]));
    EnlargeRow(between, 3, enlarged_.data(), width_);
  }

  std::int16_t* Shrunk(int y) { return shrunk_.data() + static_cast<std::ptrdiff_t>(y % 4) * width_; }

  const BytePlane& plane_;
  const int width_;
  const Word seed_;
  Scratch<std::int16_t> between_;
  Scratch<Byte> enlarged_;
  Scratch<Byte> noise_;
  Scratch<std::int16_t> shrunk_;
};

}  // namespace

Byte NoiseHash(Word x) {
  return static_cast<Byte>(HashByte(HashUpperBytes(x), x & 255));
}

void NoiseRun(Word x, int count, Byte* noise) {
  for (Byte* const end = noise + count; noise != end;) {
    // Neighbours share all but the last byte.
    const Word upper = HashUpperBytes(x);
    const std::ptrdiff_t shared = std::min<std::ptrdiff_t>(256 - (x & 255), end - noise);
    for (std::ptrdiff_t i = 0; i < shared; ++i) *noise++ = static_cast<Byte>(HashByte(upper, x++ & 255));
  }
}

BytePlane NoiseDots(const BytePlane& plane, Word seed, int firstRow) {
  assert(plane.numElements() > 0);
  const Word rowSize = 2 * static_cast<Word>(plane.cols());
  DitheredRows dithered(plane, seed + 2 * static_cast<Word>(firstRow) * rowSize);
  BytePlane result(plane.rows(), plane.cols());
  for (int y = 0; y < plane.rows(); ++y) {
    dithered.Dither(2 * y);
    dithered.Dither(2 * y + 1);
    dithered.Shrink(y, Row(result, y));
  }
  return result;
}

}  // namespace quentara
