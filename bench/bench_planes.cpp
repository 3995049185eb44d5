#include "bench_planes.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace quentara {
namespace {

struct Disc {
  double y, x, radius, level, shade;
};

std::vector<Disc> Discs(int height, int width, std::mt19937& rng) {
  std::vector<Disc> discs(60);
  for (std::size_t i = 0; i < discs.size(); ++i) {
    const auto upTo = [&](double limit) { return limit * (rng() % 1000) / 1000; };
    const double radius = height / (2.5 + static_cast<double>(i) / 2);  // later ones, in front, are smaller
    discs[i] = {upTo(height), upTo(width), radius, 20 + upTo(190), upTo(60) - 30};
  }
  return discs;
}

BytePlane Picture(int height, int width, double sigma) {
  std::mt19937 rng(1);
  const std::vector<Disc> discs(Discs(height, width, rng));
  BytePlane plane(height, width);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      double level = 60 + 90.0 * y / height;
      for (const Disc& disc : discs) {
        const double dy = y - disc.y, dx = x - disc.x;
        if (dy * dy + dx * dx < disc.radius * disc.radius) level = disc.level + disc.shade * (dx + dy) / disc.radius;
      }
      level += 5 * std::sin(x * 0.31 + 3 * std::sin(y * 0.05)) * std::sin(y * 0.23);
      double noise = -6;  // the sum of twelve uniform samples is close to normal
      for (int i = 0; i < 12; ++i) noise += rng() / 4294967296.0;
      plane(y, x) = static_cast<unsigned char>(std::clamp(level + sigma * noise, 0.0, 255.0));
    }
  return plane;
}

}  // namespace

BytePlane NaturalPlane(int height, int width) {
  return Picture(height, width, 2.5);
}

BytePlane NoisyPlane(int height, int width) {
  return Picture(height, width, 25);
}

BytePlane FlatPlane(int height, int width) {
  BytePlane plane(height, width);
  plane = 128;
  return plane;
}

ChannelSet NaturalPicture(int height, int width) {
  const BytePlane red(NaturalPlane(height, width));
  BytePlane green(height, width), blue(height, width);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const int here = red(y, x), mirrored = red(y, width - 1 - x);
      green(y, x) = static_cast<unsigned char>((3 * here + mirrored) / 4);
      blue(y, x) = static_cast<unsigned char>((here + mirrored) / 2);
    }
  return ChannelSet("RGB", static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), red, &green, &blue);
}

}  // namespace quentara
