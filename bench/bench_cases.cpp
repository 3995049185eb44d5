#include "bench_cases.h"

#include <fstream>
#include <map>
#include <utility>

#include "bench_planes.h"

namespace quentara {
namespace {

constexpr int kHeight = 1080, kWidth = 1920;

using MakePlane = BytePlane (*)(int height, int width);

const std::pair<const char*, MakePlane> kPlanes[] = {
    {"natural", NaturalPlane}, {"noisy", NoisyPlane}, {"flat", FlatPlane}};

const BytePlane& PlaneOf(MakePlane make) {
  static std::map<MakePlane, BytePlane> planes;
  const auto known = planes.find(make);
  return known != planes.end() ? known->second : planes.emplace(make, make(kHeight, kWidth)).first->second;
}

}  // namespace

int RangeLimit(int radius) {
  return radius <= 3 ? 15 : radius <= 10 ? 20 : radius <= 17 ? 27 : 35;
}

void RegisterWindows(const std::string& filter, const std::string& peer, int largestRadius, const WindowRun& run) {
  for (const auto& [planeName, make] : kPlanes)
    for (const int radius : {1, 2, 3, 5, 8, 10, 14, 17, 30, 50}) {
      if (radius > largestRadius) continue;
      const std::string path = std::string("window/") + planeName + "/" + filter + "/" + std::to_string(radius) +
                               (peer.empty() ? "" : "/" + peer);
      const auto measure = [run, radius, makePlane = make](benchmark::State& state) {
        const BytePlane& plane = PlaneOf(makePlane);
        run(state, radius, plane);
        CountPixels(state, static_cast<double>(plane.numElements()));
      };
      benchmark::RegisterBenchmark(path.c_str(), measure)->Unit(benchmark::kMillisecond);
    }
}

void WritePlanes(const std::string& folder) {
  for (const auto& [name, make] : kPlanes) {
    std::ofstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(folder + "/" + name + ".pgm", std::ios::binary);
    const BytePlane& plane = PlaneOf(make);
    file << "P5\n" << kWidth << " " << kHeight << "\n255\n";
    file.write(reinterpret_cast<const char*>(plane.data()), static_cast<std::streamsize>(plane.numElements()));
  }
}

const ChannelSet& FramePicture(FrameSize size) {
  static std::map<int, ChannelSet> pictures;
  const auto known = pictures.find(size.width);
  return known != pictures.end() ? known->second
                                 : pictures.emplace(size.width, NaturalPicture(size.height, size.width)).first->second;
}

void RegisterFrames(const std::string& name, const FrameRun& run) {
  for (const FrameSize size : {FrameSize{360, 640}, {1080, 1920}, {2160, 3840}})
    for (const int threads : {1, 2}) {
      const std::string path = "frame/" + name + "/" + std::to_string(size.width) + "x" + std::to_string(size.height) +
                               "/" + std::to_string(threads);
      auto* const registered = benchmark::RegisterBenchmark(path.c_str(), run, size, threads);
      registered->Unit(benchmark::kMillisecond);
      // One thread is measured by its CPU time, which other programs on the machine disturb less.
      if (threads > 1) registered->UseRealTime();
    }
}

void CountPixels(benchmark::State& state, double pixels) {
  state.counters["ns_per_pixel"] =
      benchmark::Counter(1e-9 * pixels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void CountFrame(benchmark::State& state, FrameSize size, std::size_t peakBytes) {
  const double pixels = static_cast<double>(size.height) * size.width;
  CountPixels(state, pixels);
  state.counters["bytes_per_pixel"] = static_cast<double>(peakBytes) / pixels;
}

}  // namespace quentara
