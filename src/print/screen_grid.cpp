#include "print/screen_grid.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "imageops/window_kernels_dispatch.h"

namespace quentara {
namespace {

constexpr double kUnit = 4294967296.0;  // 2^32
constexpr int kRun = 256;               // pixels between two looks for edges: their flags stay in registers or cache

// The polar form is off by at most, in halves of the last place of a float (2^-24): 1 for f and 2 for a + f, which stay
// below 2 and 4; relative to the result 2 for r, and 1 each for the cosine, the product and the last sum. The phases
// are off by half a unit a pixel, times the cell. One part in eight more covers the products of these errors.
std::uint32_t EdgeOf(int cell, int height, int width) {
  const double reach = std::hypot(height, width) + 1.0;
  const double polar = reach * 9.0 / 16777216.0, phases = (width + 4.0) * cell / kUnit;
  return static_cast<std::uint32_t>(std::min(polar + phases, 0.4) * kUnit);
}

int FlooredModulus(float value, int cell) {
  const int rest = static_cast<int>(value) % cell;
  return rest < 0 ? rest + cell : rest;
}

float RoundHalfUp(float value) {
  return std::floor(value + 0.5f);
}

}  // namespace

ScreenGrid::ScreenGrid(float angle, int cell, int height, int width)
    : angle_(angle * 3.1415927f / 180.0f),
      cell_(cell),
      width_(width),
      cosine_(std::cos(static_cast<double>(angle_))),
      sine_(std::sin(static_cast<double>(angle_))),
      edge_(EdgeOf(cell, height, width)) {
  assert(angle >= 0.0f && angle <= 90.0f && cell >= 1 && cell <= 64 && height + width <= 65536);
}

std::uint32_t ScreenGrid::PhaseOf(double pixels) const {
  const double cells = pixels / cell_;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(std::floor((cells - std::floor(cells)) * kUnit + 0.5)));
}

std::uint16_t ScreenGrid::PolarPlace(int y, int x) const {
  const float row = static_cast<float>(y), column = static_cast<float>(x);
  const float radius = std::sqrt(row * row + column * column);
  const double turned = static_cast<double>(
      angle_ + static_cast<float>(std::atan2(static_cast<double>(row), static_cast<double>(column))));
  const float u = RoundHalfUp(radius * static_cast<float>(std::cos(turned)));
  const float v = RoundHalfUp(radius * static_cast<float>(std::sin(turned)));
  return static_cast<std::uint16_t>(FlooredModulus(v, cell_) * cell_ + FlooredModulus(u, cell_));
}

void ScreenGrid::PlacesOfRow(int y, std::uint16_t* places) const {
  const ScreenRow row = {PhaseOf(0.5 - y * sine_),          PhaseOf(cosine_),
                         PhaseOf(0.5 + y * cosine_),        PhaseOf(sine_),
                         static_cast<std::uint32_t>(cell_), edge_};
  for (int start = 0; start < width_; start += kRun) {
    const int count = std::min(kRun, width_ - start);
    std::uint32_t onEdge[kRun];
    if (!ActiveKernels().pixel.screenPlaces(row, start, places + start, onEdge, count)) continue;
    for (int i = 0; i < count; ++i)
      if (onEdge[i] != 0) places[start + i] = PolarPlace(y, start + i);
  }
}

}  // namespace quentara
