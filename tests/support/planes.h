/// Planes for tests: random ones, comparisons that name the first difference, and hosts with several workers.
#pragma once

#include <algorithm>
#include <random>
#include <sstream>
#include <string>

#include "render/channel_set.h"
#include "render/plane.h"

namespace quentara {

/// Independent uniform samples lowest .. highest.
inline BytePlane RandomPlane(int height, int width, std::mt19937& rng, int lowest = 0, int highest = 255) {
  std::uniform_int_distribution<int> sample(lowest, highest);
  BytePlane plane(height, width);
  std::generate_n(plane.data(), height * width, [&] { return static_cast<unsigned char>(sample(rng)); });
  return plane;
}

/// Samples within `limit` of those of `centre`.
inline BytePlane RandomPlaneNear(const BytePlane& centre, int limit, std::mt19937& rng) {
  std::uniform_int_distribution<int> offset(-limit, limit);
  BytePlane plane(centre.rows(), centre.cols());
  std::transform(centre.data(), centre.data() + centre.numElements(), plane.data(),
                 [&](int v) { return static_cast<unsigned char>(std::clamp(v + offset(rng), 0, 255)); });
  return plane;
}

/// Patches of few values with some noise: windows with many equal samples, edges and flat areas.
inline BytePlane PatchyPlane(int height, int width, std::mt19937& rng) {
  BytePlane plane(height, width);
  const int patch = 1 + static_cast<int>(rng() % 9);
  const BytePlane levels(RandomPlane(height / patch + 1, width / patch + 1, rng));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      plane(y, x) = static_cast<unsigned char>(std::min<int>(255, levels(y / patch, x / patch) + rng() % 3));
  return plane;
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

inline ChannelSet RandomPicture(int height, int width, std::mt19937& rng) {
  const BytePlane red(PatchyPlane(height, width, rng)), green(PatchyPlane(height, width, rng)),
      blue(RandomPlane(height, width, rng));
  return ChannelSet("RGB", static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), red, &green, &blue);
}

}  // namespace quentara
