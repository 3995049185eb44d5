/// The planes, pictures and sizes that ours and the peers are measured on, and the names of the benchmarks.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

#include "render/channel_set.h"
#include "render/plane.h"

namespace quentara {

/// The range limit that goes with a radius in the default frame. (peers/window_peers.py takes the same.)
int RangeLimit(int radius);

using WindowRun = std::function<void(benchmark::State&, int radius, const BytePlane& plane)>;

/// Registers window/PLANE/FILTER/RADIUS[/PEER] for every plane of 1920x1080 and every radius.
/// @param peer           empty for our own.
/// @param largestRadius  larger ones are left out.
void RegisterWindows(const std::string& filter, const std::string& peer, int largestRadius, const WindowRun& run);

/// Writes the planes into `folder` as natural.pgm, noisy.pgm and flat.pgm. @throws std::ios_base::failure
void WritePlanes(const std::string& folder);

struct FrameSize {
  int height;
  int width;
};

/// The frame to render, the same at every call.
const ChannelSet& FramePicture(FrameSize size);

using FrameRun = std::function<void(benchmark::State&, FrameSize size, int threads)>;

/// Registers frame/NAME/WIDTHxHEIGHT/THREADS for every size and number of threads.
void RegisterFrames(const std::string& name, const FrameRun& run);

/// Counters of a benchmark that handles so many pixels in each iteration.
void CountPixels(benchmark::State& state, double pixels);
/// The same for a frame, with the most memory that it held at once.
void CountFrame(benchmark::State& state, FrameSize size, std::size_t peakBytes);

}  // namespace quentara
