/// Small frames whose digests are stored: every stage at its defaults, at both ends of its sliders, and with values
/// that no two neighbouring parameters share.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/param_table.h"
#include "support/fake_host.h"

namespace quentara {

/// A value of a parameter of the host, by identifier: a choice counted from 1, a slider's or fixed value, 0 or 1.
struct GoldenValue {
  int id;
  A_long value;
};

/// The stages that a frame goes through; all others are off.
struct GoldenStage {
  std::string name;  ///< that of its group, or of the choice
  std::vector<GoldenValue> on;
};

/// Where the parameters stand: their defaults, the ends of what their sliders span, or three times other values.
enum class GoldenSliders { Defaults, Lowest, Highest, First, Second, Third };
constexpr GoldenSliders kGoldenSliders[] = {GoldenSliders::Defaults, GoldenSliders::Lowest, GoldenSliders::Highest,
                                            GoldenSliders::First,    GoldenSliders::Second, GoldenSliders::Third};

const std::vector<GoldenStage>& GoldenStages();

/// The digest of one frame of 96 x 72 pixels.
/// @param change  called with the host before it renders, to alter a value.
std::uint64_t GoldenDigest(
    const GoldenStage& stage, GoldenSliders sliders, bool deep, HostWorkers workers,
    const std::function<void(FakeHost&)>& change = [](FakeHost&) {});

/// A line for every frame, which says what it shows and its digest: the same on every platform.
std::vector<std::string> GoldenLines();

/// Moves a parameter somewhere else: another choice, the other state, a distant value or colour.
void MoveParam(const Nivra::ParamRow& row, PF_ParamDef& param);

}  // namespace quentara
