// The outlines at the effect's defaults, each from its own inputs to the picture with its lines.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench_planes.h"
#include "imageops/luma.h"
#include "imageops/skin_tones.h"
#include "outlines/comic_outlines.h"
#include "outlines/conte_outlines.h"
#include "outlines/marker_outlines.h"
#include "outlines/scratchboard_outlines.h"
#include "outlines/shadow_outlines.h"
#include "outlines/soft_outlines.h"
#include "outlines/woodcut_outlines.h"
#include "paint/crackle.h"
#include "render/standalone_host.h"

namespace quentara {
namespace {

constexpr int kHeight = 1080, kWidth = 1920;

constexpr SoftOutlineSettings kSoft = {0.0f, 2, 0.0f, kHigh};
constexpr ComicOutlineSettings kComic = {0.6f, 0.6f, 2, 1.0f, 0.0f, kHigh};
constexpr MarkerOutlineSettings kMarker = {false, 5, 5, 8, 3, 10, 1.0f, 0.0f};
constexpr ShadowOutlineSettings kShadow = {0.5f, 1.0f, false, 0.0f};
constexpr WoodcutOutlineSettings kWoodcut = {0.5f, 0.5f, 0.5f, 3, 1.0f, false, 0.0f, kHigh};
constexpr ScratchboardOutlineSettings kScratchboard = {0.5f, kRough, 4.75f, 3, 0.5f, false, 0.0f};
constexpr ConteOutlineSettings kConte = {{1.0f, 1.0f, 1.0f}, 0.5f, 2, 0.5f, 3, 0.0f, kHigh};
constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};
constexpr BlurSettings kBlur = {BlurType::Box, 3, 15, kHigh, 0.25f, 5, 10};

/// One picture for every input of a stage, and its tones.
struct Inputs {
  ChannelSet picture = NaturalPicture(kHeight, kWidth);
  PointList skin = SkinPointList(picture.planes(0), picture.planes(1), picture.planes(2));
  Tones tones = ToneLevels(skin, BrightestPlane(picture));
};

using Stage = std::function<ChannelSet(const Inputs&)>;

void Measure(benchmark::State& state, const Stage& stage, int threads) {
  static const Inputs inputs;
  StandaloneHost host(threads);
  const Plugin::HostScope scope(host);
  for (auto _ : state) benchmark::DoNotOptimize(stage(inputs));
  state.counters["ns_per_pixel"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * inputs.picture.pixelCount() / 1e9,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

const std::pair<const char*, Stage> kStages[] = {
    {"soft", [](const Inputs& in) { return SoftOutlines(kSoft, kBlack, in.picture, in.picture); }},
    {"comic", [](const Inputs& in) { return ComicOutlines(kComic, kBlack, in.skin, &kBlur, in.picture, in.picture); }},
    {"marker",
     [](const Inputs& in) {
       const BytePlane regions(CracklePlane(kMarker.flatness, kMarker.simplicity, kMarker.separation, in.picture));
       return MarkerOutlines(kMarker, kBlack, regions, in.picture);
     }},
    {"conte", [](const Inputs& in) { return ConteOutlines(kConte, kBlack, in.picture, in.picture); }},
    {"shadow", [](const Inputs& in) { return ShadowOutlines(kShadow, kBlack, in.tones, in.picture, in.picture); }},
    {"woodcut",
     [](const Inputs& in) {
       return WoodcutOutlines(kWoodcut, kBlack, in.tones, in.skin, &kBlur, in.picture, in.picture, in.picture);
     }},
    {"scratchboard",
     [](const Inputs& in) { return ScratchboardOutlines(kScratchboard, kBlack, in.picture, in.picture); }},
};

const bool kRegistered = [] {
  for (const auto& [name, stage] : kStages)
    for (const int threads : {1, 2}) {
      const std::string path = std::string("outline/") + name + "/1920x1080/" + std::to_string(threads);
      benchmark::RegisterBenchmark(path.c_str(), Measure, stage, threads)->UseRealTime()->Unit(benchmark::kMillisecond);
    }
  return true;
}();

}  // namespace
}  // namespace quentara
