// The line extractor of the outlines, in both qualities.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "bench_cases.h"
#include "bench_planes.h"
#include "outlines/thick_line_mask.h"
#include "render/settings.h"

namespace quentara {
namespace {

void MeasureLines(benchmark::State& state, int thickness, Quality quality) {
  constexpr int kHeight = 1080, kWidth = 1920;
  static const ChannelSet picture("L", kWidth, kHeight, NaturalPlane(kHeight, kWidth));
  for (auto _ : state) benchmark::DoNotOptimize(ThickLineMask(thickness, picture, quality));
  CountPixels(state, picture.pixelCount());
}

// Beside the window filters that it is made of: window/natural/line-mask-high/2.
const bool kRegistered = [] {
  for (const auto& [name, quality] : {std::pair{"line-mask-fast", kFast}, {"line-mask-high", kHigh}})
    for (const int thickness : {1, 2, 3, 10, 30}) {
      const std::string path = std::string("window/natural/") + name + "/" + std::to_string(thickness);
      benchmark::RegisterBenchmark(path.c_str(), MeasureLines, thickness, quality)->Unit(benchmark::kMillisecond);
    }
  return true;
}();

}  // namespace
}  // namespace quentara
