#include <gmock/gmock.h>

#include <cstring>
#include <random>

#include "errors.h"
#include "parameters/parameter_table.h"
#include "parameters/text.h"

namespace quentara::cli {
namespace {

Parameter Row(std::int32_t id, const char* group, const char* name, ParameterKind kind, Interval valid = {}) {
  Parameter row;
  row.id = id;
  row.group = group;
  row.name = name;
  row.kind = kind;
  row.valid = row.slider = valid;
  return row;
}

ParameterTable SmallTable() {
  Parameter roto = Row(6, "", "Roto", ParameterKind::Popup);
  roto.choices = {"Flat Shaded", "No Roto", "2"};
  roto.standard.number = 1;
  std::vector<Parameter> rows = {roto,
                                 Row(67, "", "Flat Shaded", ParameterKind::GroupStart),
                                 Row(7, "Flat Shaded", "Flatness", ParameterKind::Slider, {0, 100}),
                                 Row(43, "Flat Shaded", "Strength", ParameterKind::Fixed, {0, 5}),
                                 Row(68, "Flat Shaded", "", ParameterKind::GroupEnd),
                                 Row(107, "", "Soft Outlines", ParameterKind::GroupStart),
                                 Row(22, "Soft Outlines", "Soft Outlines", ParameterKind::CheckBox),
                                 Row(23, "Soft Outlines", "Strength", ParameterKind::Percent, {0, 100}),
                                 Row(17, "Color Effects", "Outline Color", ParameterKind::Colour)};
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i].index = static_cast<int>(i) + 1;
  return ParameterTable(rows);
}

std::string FailureOf(const std::string& assignment) {
  const ParameterTable table = SmallTable();
  ParameterValues values = table.Defaults();
  try {
    table.Assign(assignment, values);
  } catch (const UsageError& error) {
    EXPECT_EQ(table.Defaults(), values);
    return error.what();
  }
  return "no error";
}

TEST(ParameterTable, FindsRowsByTheNamesThatUsersWrite) {
  const ParameterTable table = SmallTable();
  EXPECT_EQ(7, table.Find("Flat Shaded/Flatness").id);
  EXPECT_EQ(7, table.Find(" flat shaded / FLATNESS ").id);
  EXPECT_EQ(7, table.Find("flatness").id);
  EXPECT_EQ(6, table.Find("Roto").id);
  EXPECT_EQ(22, table.Find("soft outlines").id);
  EXPECT_EQ(23, table.Find("Soft Outlines/Strength").id);
  EXPECT_EQ(43, table.Find("43").id);
}

TEST(ParameterTable, SaysWhatIsWrongWithAnAssignment) {
  EXPECT_EQ(
      "\"Strength\" could be \"Flat Shaded/Strength\" (43) or \"Soft Outlines/Strength\" (23); give its group or its "
      "number",
      FailureOf("Strength=1"));
  EXPECT_EQ("there is no parameter \"Flat Shadd/Flatnes\"; did you mean \"Flat Shaded/Flatness\"?",
            FailureOf("Flat Shadd/Flatnes=3"));
  EXPECT_EQ("there is no parameter \"rotto\"; did you mean \"Roto\"?", FailureOf("rotto=1"));
  EXPECT_EQ("there is no parameter \"Xyzzy\"; \"quentara params\" lists them", FailureOf("Xyzzy=1"));
  EXPECT_EQ("no parameter has the identifier 67; \"quentara params\" lists them", FailureOf("67=1"));
  EXPECT_EQ("\"Roto\" sets nothing; write \"GROUP/NAME=VALUE\"", FailureOf("Roto"));
  EXPECT_EQ("\"Flat Shaded/Flatness\" takes a whole number from 0 to 100, not \"101\"", FailureOf("7=101"));
  EXPECT_EQ("\"Roto\" is one of Flat Shaded, No Roto, 2, not \"Oil\"", FailureOf("Roto=Oil"));
  EXPECT_EQ("\"Soft Outlines/Strength\" takes a percent from 0 to 100, not \"100.1%\"", FailureOf("23=100.1%"));
}

TEST(ParameterValue, IsReadFromEveryFormAndWrittenBack) {
  const ParameterTable table = SmallTable();
  const std::pair<const char*, const char*> accepted[] = {{"Roto=no roto", "No Roto"},
                                                          {"Roto=1", "Flat Shaded"},
                                                          {"Roto=2", "2"},
                                                          {"7= 14 ", "14"},
                                                          {"7=+14", "14"},
                                                          {"43=.5", "0.5"},
                                                          {"43=4.75", "4.75"},
                                                          {"43=5", "5"},
                                                          {"23=12.5%", "12.5"},
                                                          {"23=100 %", "100"},
                                                          {"23=60", "60"},
                                                          {"22=YES", "on"},
                                                          {"22=0", "off"},
                                                          {"22=True", "on"},
                                                          {"22=off", "off"},
                                                          {"17=#Ff8000", "#ff8000"},
                                                          {"17=255, 128,0", "#ff8000"}};
  for (const auto& [assignment, written] : accepted) {
    SCOPED_TRACE(assignment);
    ParameterValues values = table.Defaults();
    table.Assign(assignment, values);
    const Parameter& row = table.Find(std::string(assignment, std::strchr(assignment, '=')));
    EXPECT_EQ(written, FormatValue(row, values[row.index - 1]));
  }
}

TEST(ParameterValue, RefusesWhatIsNoValue) {
  for (const char* assignment : {"Roto=0",        "Roto=4",  "Roto=",      "7=1.5",      "7=-1",     "7=1e1",
                                 "7=99999999999", "43=5.01", "43=nan",     "43=inf",     "43=1x",    "43=-0.1",
                                 "43=+-1",        "23=5%%",  "22=2",       "22=",        "17=#ff80", "17=#ff80zz",
                                 "17=#+f8000",    "17=1,2",  "17=1,2,3,4", "17=1,2,256", "17=1,,3",  "17=red"})
    EXPECT_THAT(FailureOf(assignment), testing::HasSubstr(", not \"")) << assignment;
}

TEST(ParameterValue, KeepsTheInterfacesFixedPointNumbers) {
  const Parameter strength = SmallTable().Find("43");
  // A default of 0.85 is stored as 55705/65536; what a user sees and writes must be that same number.
  EXPECT_EQ(55705 / 65536.0, ParseValue(strength, "0.85").number);
  EXPECT_EQ("0.85", FormatValue(strength, {55705 / 65536.0, {}}));
  std::mt19937 rng(1);
  std::uniform_int_distribution<int> anyFixed(0, 5 << 16);
  for (int i = 0; i < 2000; ++i) {
    const Value value{anyFixed(rng) / 65536.0, {}};
    EXPECT_EQ(value, ParseValue(strength, FormatValue(strength, value)));
  }
}

TEST(NearestTexts, OrdersByDistanceAndLeavesOutTheFar) {
  EXPECT_THAT(NearestTexts("radus", {"Roto", "Radix", "Radius", "Presharpen"}),
              testing::ElementsAre("Radius", "Radix"));
}

}  // namespace
}  // namespace quentara::cli
