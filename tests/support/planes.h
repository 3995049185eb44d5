/// Planes for tests: from a formula or random, and comparisons that name the first difference.
#pragma once

#include <algorithm>
#include <random>
#include <sstream>
#include <string>

#include "render/channel_set.h"
#include "render/plane.h"

namespace quentara {

/// A plane of sampleAt(y, x).
template <class T = unsigned char, class SampleAt>
Plane<T> PlaneOf(int height, int width, const SampleAt& sampleAt) {
  Plane<T> plane(height, width);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) plane(y, x) = static_cast<T>(sampleAt(y, x));
  return plane;
}

/// A plane of f(a, b, ...), pixel by pixel of planes of one size.
template <class T = unsigned char, class F, class First, class... Rest>
Plane<T> EachPixel(const F& f, const Plane<First>& first, const Plane<Rest>&... rest) {
  return PlaneOf<T>(first.rows(), first.cols(), [&](int y, int x) { return f(first(y, x), rest(y, x)...); });
}

/// Independent uniform samples lowest .. highest.
inline BytePlane RandomPlane(int height, int width, std::mt19937& rng, int lowest = 0, int highest = 255) {
  std::uniform_int_distribution<int> sample(lowest, highest);
  return PlaneOf(height, width, [&](int, int) { return sample(rng); });
}

/// Samples within `limit` of those of `centre`.
inline BytePlane RandomPlaneNear(const BytePlane& centre, int limit, std::mt19937& rng) {
  std::uniform_int_distribution<int> offset(-limit, limit);
  return EachPixel([&](int v) { return std::clamp(v + offset(rng), 0, 255); }, centre);
}

/// Patches of few values with some noise: windows with many equal samples, edges and flat areas.
inline BytePlane PatchyPlane(int height, int width, std::mt19937& rng) {
  const int patch = 1 + static_cast<int>(rng() % 9);
  const BytePlane levels(RandomPlane(height / patch + 1, width / patch + 1, rng));
  return PlaneOf(height, width,
                 [&](int y, int x) { return std::min<int>(255, levels(y / patch, x / patch) + rng() % 3); });
}

/// A picture of one plane.
inline ChannelSet Grey(const BytePlane& plane) {
  return ChannelSet("L", static_cast<std::uint32_t>(plane.cols()), static_cast<std::uint32_t>(plane.rows()), plane);
}

/// A picture of the planes channel(0), channel(1) and channel(2).
template <class Channel>
ChannelSet Rgb(const Channel& channel) {
  const BytePlane red(channel(0)), green(channel(1)), blue(channel(2));
  return ChannelSet("RGB", static_cast<std::uint32_t>(red.cols()), static_cast<std::uint32_t>(red.rows()), red, &green,
                    &blue);
}

inline ChannelSet RandomPicture(int height, int width, std::mt19937& rng) {
  return Rgb([&](int i) { return i < 2 ? PatchyPlane(height, width, rng) : RandomPlane(height, width, rng); });
}

/// "" when the planes are equal, otherwise the first place where they differ, with both samples.
template <class T>
std::string FirstDifference(const Plane<T>& expected, const Plane<T>& actual) {
  std::ostringstream text;
  if (!SameSize(expected, actual)) {
    text << "sizes " << expected.rows() << "x" << expected.cols() << " and " << actual.rows() << "x" << actual.cols();
    return text.str();
  }
  for (int y = 0; y < expected.rows(); ++y)
    for (int x = 0; x < expected.cols(); ++x)
      if (expected(y, x) != actual(y, x)) {
        text << "(" << y << ", " << x << "): expected " << +expected(y, x) << ", got " << +actual(y, x);
        return text.str();
      }
  return "";
}

/// The same for pictures.
inline std::string FirstDifference(const ChannelSet& expected, const ChannelSet& actual) {
  if (expected.mode() != actual.mode()) return "modes " + expected.mode() + " and " + actual.mode();
  for (int i = 0; i < static_cast<int>(expected.channelCount()); ++i) {
    const std::string difference = FirstDifference(expected.planes(i), actual.planes(i));
    if (!difference.empty()) return "plane " + std::to_string(i) + " " + difference;
  }
  return "";
}

}  // namespace quentara
