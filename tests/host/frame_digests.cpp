// Prints a digest of every frame of a set that the library at the given path renders: the same on every platform.
#include <cstdio>
#include <exception>

#include "support/loaded_library.h"

namespace quentara {
namespace {

constexpr int kHeight = 72, kWidth = 96;

// 64-bit FNV-1a.
std::uint64_t Digest(const FakeWorld& world) {
  std::uint64_t digest = 14695981039346656037u;
  for (const std::uint16_t word : world.memory) digest = (digest ^ word) * 1099511628211u;
  return digest;
}

/// Soft shades with noise on them, skin among them, and a hard edge.
FakeWorld MakeFrame(bool deep) {
  std::mt19937 rng(17);
  FakeWorld frame(kHeight, kWidth, deep, 0, rng);
  const int white = deep ? 32768 : 255;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      const int light = x * 255 / kWidth, edge = (x / 24 + y / 18) % 2 == 0 ? 60 : 0;
      const int colour[] = {255, 90 + light * 2 / 3, 60 + light / 2, 40 + light / 3};
      for (int channel = 0; channel < 4; ++channel) {
        const int sample = colour[channel] - edge + static_cast<int>(rng() % 13) - y / 3;
        frame.SetSample(y, x, channel, std::min(std::max(sample, 0), 255) * white / 255);
      }
    }
  return frame;
}

/// What switches a stage on, by the identifier of its popup or check box.
struct Stage {
  int id;
  A_long value;
};
constexpr int kRoto = 6, kBlur = 1, kOutlineBlur = 18, kUseMainBlur = 16, kLighter = 5, kLighterType = 65;
constexpr Stage kStages[] = {{kRoto, 1}, {kRoto, 2}, {kRoto, 4}, {kRoto, 5},        {kRoto, 6},       {kRoto, 7},
                             {kRoto, 8}, {kRoto, 9}, {kBlur, 1}, {kBlur, 2},        {kBlur, 3},       {kOutlineBlur, 1},
                             {22, 1},    {26, 1},    {112, 1},   {32, 1},           {125, 1},         {136, 1},
                             {146, 1},   {13, 1},    {161, 1},   {kLighterType, 1}, {kLighterType, 2}};

/// Puts every slider at a fraction of its range, and the popups of quality at either choice.
void SetSliders(FakeHost& host, int quarters) {
  for (PF_ParamDef& param : host.params) {
    if (param.param_type == PF_Param_SLIDER) {
      PF_SliderDef& slider = param.u.sd;
      slider.value = slider.slider_min + (slider.slider_max - slider.slider_min) * quarters / 4;
    } else if (param.param_type == PF_Param_FIX_SLIDER) {
      PF_FixedSliderDef& slider = param.u.fd;
      slider.value =
          slider.slider_min + static_cast<PF_Fixed>(std::int64_t{slider.slider_max - slider.slider_min} * quarters / 4);
    } else if (param.param_type == PF_Param_POPUP && param.u.pd.num_choices == 2) {
      param.u.pd.value = 1 + quarters % 2;
    }
  }
  host.Param(39).u.fd.value = 0;  // Blend With Original
}

void SwitchOn(FakeHost& host, const Stage& stage) {
  host.SetNoStage();
  PF_ParamDef& param = host.Param(stage.id);
  if (param.param_type == PF_Param_CHECKBOX)
    param.u.bd.value = stage.value;
  else
    param.u.pd.value = stage.value;
  if (stage.id == kOutlineBlur) host.Param(kUseMainBlur).u.bd.value = 0, host.Param(26).u.bd.value = 1;
  if (stage.id != kLighterType) host.Param(kLighter).u.fd.value = 0;
}

int Run(const char* path) {
  const LoadedLibrary library(path);
  constexpr int kDefaults = -1;
  int failures = 0;
  for (const bool deep : {false, true}) {
    const FakeWorld input = MakeFrame(deep);
    for (const Stage& stage : kStages)
      for (const int quarters : {kDefaults, 0, 1, 2, 3, 4})
        for (const HostWorkers workers : {HostWorkers::None, HostWorkers::Threads}) {
          FakeHost host(workers);
          host.entry = library.entry();
          host.DefineParams();
          if (quarters != kDefaults) SetSliders(host, quarters);
          SwitchOn(host, stage);
          FakeWorld output(input);
          const PF_Err error = host.Render(input, output);
          failures += error != PF_Err_NONE;
          std::printf("%d-bit %3d=%d sliders %2d workers %d: error %d, %016llx\n", deep ? 16 : 8, stage.id, stage.value,
                      quarters, static_cast<int>(workers), error, static_cast<unsigned long long>(Digest(output)));
        }
  }
  return failures == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quentara

int main(int count, char* arguments[]) {
  try {
    if (count == 2) return quentara::Run(arguments[1]);
    std::fputs("usage: frame_digests LIBRARY\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "frame_digests: %s\n", error.what());
  }
  return 1;
}
