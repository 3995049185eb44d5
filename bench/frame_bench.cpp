// Whole frames through the pipeline: the effect's defaults, stage by stage.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench_planes.h"
#include "render/pipeline.h"
#include "render/standalone_host.h"

namespace quentara {
namespace {

constexpr BlurSettings kMainBlur = {BlurType::Box, 3, 15, kHigh, 0.25f, 5, 10};
constexpr FlatShadedSettings kFlatShaded = {10, 20, 1.0f, kHigh};
constexpr ComicOutlineSettings kComic = {0.6f, 0.6f, 2, 1.0f, 0.0f, kHigh};
constexpr AirbrushSettings kAirbrush = {8, 0.4f, 1.5f};
constexpr BristleSettings kBristle = {5.0f, 3, 0.5f, kHigh};
constexpr CrackleSettings kCrackle = {10, 10, 5, 1.0f};
constexpr DropletSettings kDroplet = {3, 0.85f};
constexpr GouacheSettings kGouache = {8, 0.75f, 3, 0.25f, kHigh};
constexpr MarkerOutlineSettings kMarker = {false, 5, 5, 8, 3, 10, 1.0f, 0.0f};
constexpr PosterPaintSettings kPosterPaint = {6, 6, 0.5f, 0.85f, 10, 0.5f};

struct FrameCase {
  const char* name;
  std::function<void(RenderSettings&)> choose;
};

template <class Record>
FrameCase Painted(const char* name, Style style, const Record* RenderSettings::*member, const Record& record) {
  return {name, [=, &record](RenderSettings& settings) {
            settings.mainBlur = &kMainBlur;
            settings.useMainBlur = true;
            settings.style = style;
            settings.*member = &record;
          }};
}

FrameCase Defaults() {
  const FrameCase painted = Painted("defaults", Style::FlatShaded, &RenderSettings::flatShaded, kFlatShaded);
  return {painted.name, [painted](RenderSettings& settings) {
            painted.choose(settings);
            settings.comicOutlines = &kComic;
          }};
}

const FrameCase kFrames[] = {
    Defaults(),
    {"main_blur", [](RenderSettings& settings) { settings.mainBlur = &kMainBlur; }},
    Painted("flat_shaded", Style::FlatShaded, &RenderSettings::flatShaded, kFlatShaded),
    Painted("airbrush", Style::Airbrush, &RenderSettings::airbrush, kAirbrush),
    Painted("bristle", Style::Bristle, &RenderSettings::bristle, kBristle),
    Painted("crackle", Style::Crackle, &RenderSettings::crackle, kCrackle),
    Painted("droplet", Style::Droplet, &RenderSettings::droplet, kDroplet),
    Painted("gouache", Style::Gouache, &RenderSettings::gouache, kGouache),
    Painted("poster_paint", Style::PosterPaint, &RenderSettings::posterPaint, kPosterPaint),
    Painted("marker_outlines", Style::NoRoto, &RenderSettings::markerOutlines, kMarker),
};

void RenderFrame(benchmark::State& state, const FrameCase& frame, int height, int width, int threads) {
  ChannelSet picture = NaturalPicture(height, width);
  RenderSettings settings;
  settings.frame = {picture.planes(0).data(), picture.planes(1).data(), picture.planes(2).data(), picture.height(),
                    picture.width()};
  frame.choose(settings);
  StandaloneHost host(threads);
  for (auto _ : state) {
    const FrameBuffers result = RenderPipeline::Render(settings, host);
    for (unsigned char* buffer : {result.red, result.green, result.blue}) host.Free(buffer);
  }
  const double frames = static_cast<double>(state.iterations());
  state.counters["frames_per_s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
  state.counters["ns_per_pixel"] = benchmark::Counter(frames * picture.pixelCount() / 1e9,
                                                      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

const bool kRegistered = [] {
  for (const FrameCase& frame : kFrames)
    for (const auto& [height, width] : {std::pair{360, 640}, {1080, 1920}})
      for (const int threads : {1, 2}) {
        const std::string name = std::string("frame/") + frame.name + "/" + std::to_string(width) + "x" +
                                 std::to_string(height) + "/" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(), RenderFrame, frame, height, width, threads)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
      }
  return true;
}();

}  // namespace
}  // namespace quentara
