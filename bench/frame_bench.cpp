// Whole frames through the pipeline, at the effect's defaults but for the stage that a frame is named after.
#include <benchmark/benchmark.h>

#include "bench_cases.h"
#include "counting_host.h"
#include "default_settings.h"
#include "render/pipeline.h"

namespace quentara {
namespace {

constexpr int kRoto = 6, kNoRoto = 3, kComicOutlines = 26;

struct FrameCase {
  const char* name;
  std::vector<Choice> choices;
};

FrameCase Style(const char* name, int roto) {
  return {name, {{kRoto, roto}}};
}

// A stage on its own: with Main Blur, without a style.
FrameCase Stage(const char* name, int box) {
  return {name, {{kRoto, kNoRoto}, {kComicOutlines, 0}, {box, 1}}};
}

// Styles come with Main Blur and Comic Outlines, as by default; the first is the frame of all defaults.
const FrameCase kFrames[] = {
    Style("Flat Shaded", 1),
    Style("Flat Detailed", 2),
    Style("Airbrush", 4),
    Style("Bristle", 5),
    Style("Crackle", 6),
    Style("Droplet", 7),
    Style("Gouache", 8),
    Style("Poster Paint", 9),
    {"No Roto: Main Blur", {{kRoto, kNoRoto}, {kComicOutlines, 0}}},
    Stage("No Roto: Soft Outlines", 22),
    Stage("No Roto: Comic Outlines", kComicOutlines),
    Stage("No Roto: Marker Outlines", 112),
    Stage("No Roto: Shadow Outlines", 32),
    Stage("No Roto: Woodcut Outlines", 125),
    Stage("No Roto: Scratchboard Outlines", 136),
    Stage("No Roto: Conte Outlines", 146),
    Stage("No Roto: Halftone Pattern", 13),
    Stage("No Roto: Stipple Pattern", 36),
    Stage("No Roto: Duotone Shading", 161),
};

void RenderFrame(benchmark::State& state, const FrameCase& frame, FrameSize size, int threads) {
  const ChannelSet& picture = FramePicture(size);
  Nivra::FrameSettings record;
  ReadDefaults(frame.choices, record);
  // The effect only reads its frame.
  const auto samples = [&](int i) { return const_cast<unsigned char*>(picture.planes(i).data()); };
  record.settings.frame = {samples(0), samples(1), samples(2), picture.height(), picture.width()};
  CountingHost host(threads);
  for (auto _ : state) {
    const FrameBuffers result = RenderPipeline::Render(record.settings, host);
    for (unsigned char* buffer : {result.red, result.green, result.blue}) host.Free(buffer);
  }
  CountFrame(state, size, host.peak());
}

const bool kRegistered = [] {
  for (const FrameCase& frame : kFrames)
    RegisterFrames(frame.name, [&frame](benchmark::State& state, FrameSize size, int threads) {
      RenderFrame(state, frame, size, threads);
    });
  return true;
}();

}  // namespace
}  // namespace quentara
