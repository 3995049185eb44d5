#include <gmock/gmock.h>

#include <random>

#include "cli/small_table.h"
#include "errors.h"
#include "parameters/text.h"

namespace quentara::cli {
namespace {

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
  const std::pair<const char*, int> names[] = {
      {"Flat Shaded/Flatness", 7}, {" flat shaded / FLATNESS ", 7}, {"flatness", 7}, {"Roto", 6},
      {"soft outlines", 22},       {"Soft Outlines/Strength", 23},  {" 43", 43}};
  for (const auto& [name, id] : names) EXPECT_EQ(id, table.Find(name).id) << name;
}

TEST(ParameterTable, SaysWhatIsWrongWithAnAssignment) {
  const std::pair<const char*, const char*> cases[] = {
      {"Strength=1",
       "\"Strength\" could be \"Flat Shaded/Strength\" (43) or \"Soft Outlines/Strength\" (23); give its group or its "
       "number"},
      {"Flat Shadd/Flatnes=3", "there is no parameter \"Flat Shadd/Flatnes\"; did you mean \"Flat Shaded/Flatness\"?"},
      {"rotto=1", "there is no parameter \"rotto\"; did you mean \"Roto\"?"},
      {"Xyzzy=1", "there is no parameter \"Xyzzy\"; \"quentara params\" lists them"},
      {"67=1", "no parameter has the identifier 67; \"quentara params\" lists them"},
      {"Roto", "\"Roto\" sets nothing; write \"GROUP/NAME=VALUE\""},
      {"7=101", "\"Flat Shaded/Flatness\" takes a whole number from 0 to 100, not \"101\""},
      {"Roto=Oil", "\"Roto\" is one of Flat Shaded, No Roto, 2, not \"Oil\""},
      {"23=100.1%", "\"Soft Outlines/Strength\" takes a percent from 0 to 100, not \"100.1%\""}};
  for (const auto& [assignment, message] : cases) EXPECT_EQ(message, FailureOf(assignment));
}

TEST(ParameterValue, IsReadFromEveryFormAndWrittenBack) {
  const ParameterTable table = SmallTable();
  for (const std::string text : {"Roto=no roto -> No Roto", "Roto=1 -> Flat Shaded", "Roto=2 -> 2", "7= 14  -> 14",
                                 "7=+14 -> 14", "43=.5 -> 0.5", "43=4.75 -> 4.75", "43=5 -> 5", "23=12.5% -> 12.5",
                                 "23=100 % -> 100", "23=60 -> 60", "22=YES -> on", "22=0 -> off", "22=True -> on",
                                 "22=off -> off", "17=#Ff8000 -> #ff8000", "17=255, 128,0 -> #ff8000"}) {
    const std::size_t arrow = text.find(" -> ");
    ParameterValues values = table.Defaults();
    table.Assign(text.substr(0, arrow), values);
    const Parameter& row = table.Find(text.substr(0, text.find('=')));
    EXPECT_EQ(text.substr(arrow + 4), FormatValue(row, values[row.index - 1])) << text;
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
  for (int i = 0; i < 2000; ++i) {
    const Value value{rng() % (5 << 16) / 65536.0, {}};
    EXPECT_EQ(value, ParseValue(strength, FormatValue(strength, value)));
  }
}

TEST(NearestTexts, OrdersByDistanceAndLeavesOutTheFar) {
  EXPECT_THAT(NearestTexts("radus", {"Roto", "Radix", "Radius", "Presharpen"}),
              testing::ElementsAre("Radius", "Radix"));
}

}  // namespace
}  // namespace quentara::cli
