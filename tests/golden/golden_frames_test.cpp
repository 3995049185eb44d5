#include "golden/golden_frames.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/expect_styles.h"

namespace quentara {
namespace {

std::vector<std::string> StoredLines() {
  std::ifstream file(QUENTARA_GOLDEN_FRAMES);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST(GoldenFrames, AreWhatTheyWereWithEveryInstructionSet) {
  const std::vector<std::string> stored = StoredLines();
  ForInstructionSets([&] {
    const std::vector<std::string> lines = GoldenLines();
    ASSERT_EQ(stored.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(stored[i], lines[i]);
  });
}

/// Whether some stored frame would be another if the parameter stood elsewhere.
bool ChangesAFrame(const Nivra::ParamRow& row, const std::string& group) {
  std::vector<GoldenStage> stages = GoldenStages();
  std::stable_partition(stages.begin(), stages.end(),
                        [&](const GoldenStage& stage) { return stage.name.find(group) == 0; });
  for (const GoldenStage& stage : stages)
    for (const GoldenSliders sliders :
         {GoldenSliders::First, GoldenSliders::Second, GoldenSliders::Third, GoldenSliders::Defaults}) {
      const auto move = [&](FakeHost& host) { MoveParam(row, host.Param(row.id)); };
      if (GoldenDigest(stage, sliders, false, HostWorkers::One) !=
          GoldenDigest(stage, sliders, false, HostWorkers::One, move))
        return true;
    }
  return false;
}

TEST(GoldenFrames, LookAtEveryParameter) {
  std::string group;
  for (const Nivra::ParamRow& row : Nivra::kParamTable) {
    if (row.kind == Nivra::ParamKind::GroupStart) group = row.name;
    if (row.kind == Nivra::ParamKind::GroupEnd) group.clear();
    if (IsGroup(row.kind)) continue;
    EXPECT_TRUE(ChangesAFrame(row, group)) << group << "/" << row.name;
  }
}

}  // namespace
}  // namespace quentara
