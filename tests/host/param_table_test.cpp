// The parameters as a host receives them, against a list that was written down apart from the code.
#include "host/param_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>
#include <string>

#include "support/fake_host.h"

namespace quentara {
namespace {

struct GoldenRow {
  int index, indexWithoutGroups, id;
  std::string kind, name, initial;
  int sliderMin, sliderMax, validMin, validMax;
  std::string choices;
};

const std::vector<GoldenRow>& Golden() {
  static const std::vector<GoldenRow> rows = {
#include "host/param_table_golden.inc"
  };
  return rows;
}

// The 1-based place of `choice` in a list separated by bars, and the length of the list.
std::pair<int, int> PlaceOf(const std::string& choice, const std::string& choices) {
  int place = 0, count = 0;
  for (std::size_t from = 0; from <= choices.size(); ++count) {
    const std::size_t to = std::min(choices.find('|', from), choices.size());
    if (choices.substr(from, to - from) == choice) place = count + 1;
    from = to + 1;
  }
  return {place, count};
}

void ExpectPopup(const GoldenRow& row, const PF_PopupDef& def) {
  const auto [place, count] = PlaceOf(row.initial, row.choices);
  EXPECT_EQ(place, def.value);
  EXPECT_EQ(place, def.dephault);
  EXPECT_EQ(count, def.num_choices);
  EXPECT_EQ(row.choices, def.u.namesptr);
}

void ExpectSlider(const GoldenRow& row, const PF_SliderDef& def) {
  EXPECT_EQ(std::stoi(row.initial), def.value);
  EXPECT_EQ(def.value, def.dephault);
  EXPECT_EQ((std::vector{row.sliderMin, row.sliderMax, row.validMin, row.validMax}),
            (std::vector{def.slider_min, def.slider_max, def.valid_min, def.valid_max}));
  EXPECT_STREQ("", def.value_str);
  EXPECT_STREQ("", def.value_desc);
}

void ExpectFixed(const GoldenRow& row, const PF_FixedSliderDef& def, bool percent) {
  EXPECT_EQ(static_cast<int>(std::stod(row.initial) * 65536), def.value);
  EXPECT_EQ(def.value, def.dephault);
  EXPECT_EQ((std::vector{row.sliderMin << 16, row.sliderMax << 16, row.validMin << 16, row.validMax << 16}),
            (std::vector{def.slider_min, def.slider_max, def.valid_min, def.valid_max}));
  EXPECT_EQ(percent ? 1 : 2, def.precision);
  EXPECT_EQ(percent ? PF_ValueDisplayFlag_PERCENT : 0, def.display_flags);
}

void ExpectColor(const GoldenRow& row, const PF_ColorDef& def) {
  const std::string text =
      std::to_string(def.value.red) + "," + std::to_string(def.value.green) + "," + std::to_string(def.value.blue);
  EXPECT_EQ(row.initial, text);
  EXPECT_EQ(255, def.value.alpha);
  EXPECT_EQ(0, std::memcmp(&def.value, &def.dephault, sizeof def.value));
}

void ExpectRow(const GoldenRow& row, const PF_ParamDef& def) {
  SCOPED_TRACE(row.name + " " + std::to_string(row.id));
  static const std::map<std::string, int> kTypes = {{"popup", PF_Param_POPUP},
                                                    {"slider", PF_Param_SLIDER},
                                                    {"fixed", PF_Param_FIX_SLIDER},
                                                    {"percent", PF_Param_FIX_SLIDER},
                                                    {"check box", PF_Param_CHECKBOX},
                                                    {"colour", PF_Param_COLOR},
                                                    {"group start", PF_Param_GROUP_START},
                                                    {"group end", PF_Param_GROUP_END}};
  EXPECT_EQ(row.id, def.uu.id);
  ASSERT_EQ(kTypes.at(row.kind), def.param_type);
  EXPECT_EQ(row.kind == "group end" ? 0 : PF_ParamFlag_START_COLLAPSED, def.flags);
  EXPECT_EQ(0, def.ui_flags);
  EXPECT_EQ(row.kind == "check box" ? "" : row.name, def.name);
  if (row.kind == "popup") ExpectPopup(row, def.u.pd);
  if (row.kind == "slider") ExpectSlider(row, def.u.sd);
  if (row.kind == "fixed" || row.kind == "percent") ExpectFixed(row, def.u.fd, row.kind == "percent");
  if (row.kind == "colour") ExpectColor(row, def.u.cd);
  if (row.kind == "check box") {
    EXPECT_EQ(row.initial == "on" ? 1 : 0, def.u.bd.value);
    EXPECT_EQ(def.u.bd.value, def.u.bd.dephault);
    EXPECT_EQ(row.name, def.u.bd.u.nameptr);
  }
}

TEST(ParamTable, IsTheOneThatProjectsKnow) {
  FakeHost host(HostWorkers::None, {12, 12});
  ASSERT_EQ(PF_Err_NONE, host.DefineParams());
  EXPECT_EQ(160, host.out.num_params);
  ASSERT_EQ(160u, host.params.size());
  ASSERT_EQ(159u, Golden().size());
  std::set<int> ids;
  for (const GoldenRow& row : Golden()) {
    ExpectRow(row, host.params[static_cast<std::size_t>(row.index)]);
    EXPECT_TRUE(ids.insert(row.id).second) << row.id << " is used twice";
  }
}

TEST(ParamTable, HasNoGroupsBefore1212) {
  FakeHost host(HostWorkers::None, {12, 11});
  ASSERT_EQ(PF_Err_NONE, host.DefineParams());
  EXPECT_EQ(118, host.out.num_params);
  ASSERT_EQ(118u, host.params.size());
  for (const GoldenRow& row : Golden())
    if (row.indexWithoutGroups != 0) ExpectRow(row, host.params[static_cast<std::size_t>(row.indexWithoutGroups)]);
  FakeHost newer(HostWorkers::None, {13, 0});
  ASSERT_EQ(PF_Err_NONE, newer.DefineParams());
  EXPECT_EQ(160, newer.out.num_params);
}

TEST(ParamTable, StopsWhereTheHostRefuses) {
  FakeHost host;
  host.refuseParam = 40;
  host.refusal = PF_Err_UNRECOGNIZED_PARAM_TYPE;
  EXPECT_EQ(PF_Err_UNRECOGNIZED_PARAM_TYPE, host.DefineParams());
  EXPECT_EQ(40u, host.params.size());
}

}  // namespace
}  // namespace quentara
