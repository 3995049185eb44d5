#include "golden/golden_frames.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "print/stipple_seed.h"

namespace quentara {
namespace {

using Nivra::ParamKind;
using Nivra::ParamRow;

constexpr int kHeight = 72, kWidth = 96;
constexpr int kRoto = 6, kMainBlur = 1, kUseMainBlur = 16, kOutlineBlur = 18, kComic = 26, kMarker = 112;
constexpr int kLighterType = 65, kLighter = 5, kBlend = 39;
constexpr A_long kHalf = 50 << 16;  // per cent

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

// 64-bit FNV-1a.
std::uint64_t Digest(const FakeWorld& world) {
  std::uint64_t digest = 14695981039346656037u;
  for (const std::uint16_t word : world.memory) digest = (digest ^ word) * 1099511628211u;
  return digest;
}

/// A share of a range for the row at `index`, in sixteenths from 2 to 14, far from that of its neighbours.
int Sixteenths(std::size_t index, int set) {
  return 2 + static_cast<int>((index * 5 + static_cast<std::size_t>(set) * 4) % 13);
}

/// Off the default, within what the slider spans.
A_long Within(A_long min, A_long max, int sixteenths, A_long initial) {
  const auto value = static_cast<A_long>(min + std::int64_t{max - min} * sixteenths / 16);
  return value != initial ? value : value < max ? value + 1 : value - 1;
}

void SetRow(const ParamRow& row, std::size_t index, GoldenSliders sliders, PF_ParamDef& param) {
  const bool ends = sliders == GoldenSliders::Lowest || sliders == GoldenSliders::Highest;
  const int set = static_cast<int>(sliders) - static_cast<int>(GoldenSliders::First);
  const int sixteenths = sliders == GoldenSliders::Lowest    ? 0
                         : sliders == GoldenSliders::Highest ? 16
                                                             : Sixteenths(index, set);
  PF_ParamDefUnion& u = param.u;
  switch (row.kind) {
    case ParamKind::Slider:
      u.sd.value = Within(u.sd.slider_min, u.sd.slider_max, sixteenths, ends ? -1 : u.sd.dephault);
      break;
    case ParamKind::Fixed:
    case ParamKind::Percent:
      u.fd.value = Within(u.fd.slider_min, u.fd.slider_max, sixteenths, ends ? -1 : u.fd.dephault);
      break;
    case ParamKind::Popup:
      if (u.pd.num_choices == 2) u.pd.value = 1 + (sixteenths + set) % 2;
      break;
    case ParamKind::Color:
      u.cd.value = {255, static_cast<A_u_char>(sixteenths * 15), static_cast<A_u_char>(sixteenths * 91),
                    static_cast<A_u_char>(255 - sixteenths * 9)};
      break;
    case ParamKind::CheckBox:
      u.bd.value = (sixteenths + set) % 2;
      break;
    default:
      break;
  }
}

void SetValue(FakeHost& host, const GoldenValue& setting) {
  PF_ParamDef& param = host.Param(setting.id);
  switch (param.param_type) {
    case PF_Param_POPUP:
      param.u.pd.value = setting.value;
      break;
    case PF_Param_CHECKBOX:
      param.u.bd.value = setting.value;
      break;
    default:
      param.u.fd.value = setting.value;
  }
}

bool SwitchesItsGroup(std::size_t index) {
  return index > 0 && Nivra::kParamTable[index].kind == ParamKind::CheckBox &&
         Nivra::kParamTable[index - 1].kind == ParamKind::GroupStart &&
         std::string(Nivra::kParamTable[index].name) == Nivra::kParamTable[index - 1].name;
}

void SetUp(FakeHost& host, const GoldenStage& stage, GoldenSliders sliders) {
  if (host.DefineParams() != PF_Err_NONE) throw std::runtime_error("the parameters are refused");
  for (std::size_t i = 0; i < Nivra::kParamTable.size(); ++i) {
    const ParamRow& row = Nivra::kParamTable[i];
    if (SwitchesItsGroup(i)) SetValue(host, {row.id, 0});
    if (sliders == GoldenSliders::Defaults || IsGroup(row.kind) || SwitchesItsGroup(i)) continue;
    SetRow(row, i, sliders, host.Param(row.id));
  }
  host.SetNoStage();
  SetValue(host, {kLighter, 0});
  if (sliders != GoldenSliders::Third) SetValue(host, {kBlend, 0});
  for (const GoldenValue& value : stage.on) SetValue(host, value);
}

const char* NameOf(GoldenSliders sliders) {
  constexpr const char* kNames[] = {"defaults", "lowest", "highest", "first", "second", "third"};
  return kNames[static_cast<int>(sliders)];
}

}  // namespace

const std::vector<GoldenStage>& GoldenStages() {
  static const std::vector<GoldenStage> stages = {
      {"Flat Shaded", {{kRoto, 1}}},
      {"Flat Detailed", {{kRoto, 2}}},
      {"Airbrush", {{kRoto, 4}}},
      {"Bristle", {{kRoto, 5}}},
      {"Crackle", {{kRoto, 6}}},
      {"Droplet", {{kRoto, 7}}},
      {"Gouache", {{kRoto, 8}}},
      {"Poster Paint", {{kRoto, 9}}},
      {"Main Blur, Gaussian", {{kMainBlur, 1}}},
      {"Main Blur, Box", {{kMainBlur, 2}}},
      {"Main Blur, Supersmart", {{kMainBlur, 3}}},
      {"Outline Blur, Gaussian", {{kOutlineBlur, 1}, {kUseMainBlur, 0}, {kComic, 1}}},
      {"Outline Blur, Supersmart", {{kOutlineBlur, 3}, {kUseMainBlur, 0}, {kComic, 1}}},
      {"Use Main Blur", {{kMainBlur, 3}, {kComic, 1}}},
      {"Soft Outlines", {{22, 1}}},
      {"Comic Outlines", {{kComic, 1}}},
      {"Marker Outlines", {{kMarker, 1}}},
      {"Marker Outlines on Crackle", {{kMarker, 1}, {kRoto, 6}}},
      {"Shadow Outlines", {{32, 1}}},
      {"Woodcut Outlines", {{125, 1}}},
      {"Scratchboard Outlines", {{136, 1}}},
      {"Conte Outlines", {{146, 1}}},
      {"Halftone Pattern", {{13, 1}}},
      {"Stipple Pattern", {{36, 1}}},
      {"Duotone Shading", {{161, 1}}},
      {"Color Effects, Lighter1", {{kLighterType, 1}, {kLighter, kHalf}}},
      {"Color Effects, Lighter2", {{kLighterType, 2}, {kLighter, kHalf}}},
  };
  return stages;
}

std::uint64_t GoldenDigest(const GoldenStage& stage, GoldenSliders sliders, bool deep, HostWorkers workers,
                           const std::function<void(FakeHost&)>& change) {
  FakeHost host(workers);
  SetUp(host, stage, sliders);
  change(host);
  const FakeWorld input = MakeFrame(deep);
  FakeWorld output(input);
  const StippleSeedScope seed(1);
  const PF_Err error = host.Render(input, output);
  if (error != PF_Err_NONE)
    throw std::runtime_error(stage.name + ", " + NameOf(sliders) + ": error " + std::to_string(error));
  return Digest(output);
}

std::vector<std::string> GoldenLines() {
  std::vector<std::string> lines;
  for (const GoldenStage& stage : GoldenStages())
    for (const GoldenSliders sliders : kGoldenSliders)
      for (const bool deep : {false, true})
        for (const HostWorkers workers : {HostWorkers::One, HostWorkers::Threads}) {
          char digest[17];
          std::snprintf(digest, sizeof digest, "%016llx",
                        static_cast<unsigned long long>(GoldenDigest(stage, sliders, deep, workers)));
          lines.push_back(stage.name + "; " + NameOf(sliders) + "; " + (deep ? "16 bits; " : "8 bits; ") +
                          (workers == HostWorkers::One ? "1 worker: " : "3 workers: ") + digest);
        }
  return lines;
}

void MoveParam(const ParamRow& row, PF_ParamDef& param) {
  PF_ParamDefUnion& u = param.u;
  const auto far = [](A_long value, A_long min, A_long max) {
    return value - min > max - value ? min + (value - min) / 3 : max - (max - value) / 3;
  };
  switch (row.kind) {
    case ParamKind::Slider:
      u.sd.value = far(u.sd.value, u.sd.slider_min, u.sd.slider_max);
      break;
    case ParamKind::Fixed:
    case ParamKind::Percent:
      u.fd.value = far(u.fd.value, u.fd.slider_min, u.fd.slider_max);
      break;
    case ParamKind::Popup:
      u.pd.value = 1 + u.pd.value % u.pd.num_choices;
      break;
    case ParamKind::CheckBox:
      u.bd.value = 1 - u.bd.value;
      break;
    case ParamKind::Color:
      u.cd.value.green = static_cast<A_u_char>(255 - u.cd.value.green);
      break;
    default:
      break;
  }
}

}  // namespace quentara
