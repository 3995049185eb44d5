// The outlines at the effect's defaults, each from its own inputs to the picture with its lines.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench_cases.h"
#include "default_settings.h"
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

constexpr FrameSize kSize = {1080, 1920};

constexpr OutlineColor kBlack = {0.0f, 0.0f, 0.0f, OutlineColorClass::Black};

/// The settings, one picture for every input of a stage, and its tones.
struct Inputs {
  Inputs() { ReadDefaults({}, defaults); }

  Nivra::FrameSettings defaults;
  ChannelSet picture = FramePicture(kSize);
  PointList skin = SkinPointList(picture.planes(0), picture.planes(1), picture.planes(2));
  Tones tones = ToneLevels(skin, BrightestPlane(picture));
};

using Stage = std::function<ChannelSet(const Inputs&)>;

void Measure(benchmark::State& state, const Stage& stage, int threads) {
  static const Inputs inputs;
  StandaloneHost host(threads);
  const Plugin::HostScope scope(host);
  for (auto _ : state) benchmark::DoNotOptimize(stage(inputs));
  CountPixels(state, inputs.picture.pixelCount());
}

const std::pair<const char*, Stage> kStages[] = {
    {"soft", [](const Inputs& in) { return SoftOutlines(in.defaults.softOutlines, kBlack, in.picture, in.picture); }},
    {"comic",
     [](const Inputs& in) {
       return ComicOutlines(in.defaults.comicOutlines, kBlack, in.skin, &in.defaults.mainBlur, in.picture, in.picture);
     }},
    {"marker",
     [](const Inputs& in) {
       const MarkerOutlineSettings& s = in.defaults.markerOutlines;
       const int radius = FirstCrackleRadius(s.flatness, s.separation);
       const BytePlane regions(CracklePlane(radius, s.simplicity, s.separation, in.picture));
       return MarkerOutlines(s, kBlack, regions, in.picture);
     }},
    {"conte",
     [](const Inputs& in) { return ConteOutlines(in.defaults.conteOutlines, kBlack, in.picture, in.picture); }},
    {"shadow",
     [](const Inputs& in) {
       return ShadowOutlines(in.defaults.shadowOutlines, kBlack, in.tones, in.picture, in.picture);
     }},
    {"woodcut",
     [](const Inputs& in) {
       return WoodcutOutlines(in.defaults.woodcutOutlines, kBlack, in.tones, in.skin, &in.defaults.mainBlur, in.picture,
                              in.picture, in.picture);
     }},
    {"scratchboard",
     [](const Inputs& in) {
       return ScratchboardOutlines(in.defaults.scratchboardOutlines, kBlack, in.picture, in.picture);
     }},
};

const bool kRegistered = [] {
  for (const auto& [name, stage] : kStages)
    for (const int threads : {1, 2}) {
      const std::string path = std::string("outline/") + name + "/1920x1080/" + std::to_string(threads);
      auto* const registered = benchmark::RegisterBenchmark(path.c_str(), Measure, stage, threads);
      registered->Unit(benchmark::kMillisecond);
      if (threads > 1) registered->UseRealTime();
    }
  return true;
}();

}  // namespace
}  // namespace quentara
