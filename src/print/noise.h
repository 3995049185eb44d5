/// Grain: noise that is a fixed function of a number, and planes dithered with it.
#pragma once

#include <cstdint>

#include "render/plane.h"

namespace quentara {

/// One byte of noise for `x`. From h = 0, each byte b of x, the most significant first, does
///   h += first[b]; h ^= rotl(h, 3); h += second[h >> 25]; h ^= rotl(h, 14); h += 1783936964,
/// modulo 2^32, and the result is the lowest byte of h. The tables hold well-mixed words, each of them once.
unsigned char NoiseHash(std::uint32_t x);

/// Noise for x, x + 1, ... x + count - 1.
void NoiseRun(std::uint32_t x, int count, unsigned char* noise);

/// The plane with grain: enlarged to twice its size, dithered there, and shrunk again.
///
/// The enlarged sample (y, x) becomes 0 where `NoiseHash`(seed + (y + 2 * firstRow) * 2 * plane.cols() + x) is above
/// it. Both ways go through the cubic that takes the sample half-way between b and c, with a before and d behind them,
/// as (5 * (b + c) - (a + d)) / 8 on each axis, limited to 0..255 and truncated; indices are clamped into the plane.
/// Of the enlarged plane row 2 * y lies half-way between the plane's rows y - 1 and y, and row 2 * y + 1 is row y; of
/// the result row y lies half-way between the enlarged rows 2 * y - 1 and 2 * y. Columns do likewise.
/// @param firstRow  the row of the frame at which the plane starts.
BytePlane NoiseDots(const BytePlane& plane, std::uint32_t seed, int firstRow);

}  // namespace quentara
