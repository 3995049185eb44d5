#include <gmock/gmock.h>

#include "sheet/layout.h"
#include "sheet/tiles.h"

namespace quentara::cli {
namespace {

using testing::ElementsAre;

Parameter Row(const char* group, const char* name, ParameterKind kind) {
  Parameter row;
  row.group = group;
  row.name = name;
  row.kind = kind;
  return row;
}

ParameterTable SmallTable() {
  Parameter roto = Row("", "Roto", ParameterKind::Popup);
  roto.choices = {"Wash", "No Roto"};
  roto.standard.number = 1;
  Parameter ink = Row("Ink", "Ink", ParameterKind::CheckBox);
  ink.standard.number = 1;
  std::vector<Parameter> rows = {roto, ink, Row("Ink", "Reuse", ParameterKind::CheckBox),
                                 Row("Dots", "Dots", ParameterKind::CheckBox)};
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i].index = static_cast<int>(i) + 1;
  return ParameterTable(rows);
}

std::vector<double> Numbers(const Tile& tile) {
  std::vector<double> numbers;
  for (const Value& value : tile.values) numbers.push_back(value.number);
  return numbers;
}

TEST(ListTiles, ShowsStylesWithoutSwitchesAndEachSwitchAloneOverTheStyleSet) {
  const ParameterTable table = SmallTable();
  ParameterValues base = table.Defaults();
  table.Assign("Roto=No Roto", base);
  table.Assign("Ink/Reuse=on", base);
  const std::vector<TileSection> sections = ListTiles(table, base);
  ASSERT_EQ(2u, sections.size());
  EXPECT_EQ("Outlines and patterns over No Roto", sections[1].heading);
  ASSERT_EQ(2u, sections[0].tiles.size());
  EXPECT_EQ("Wash", sections[0].tiles[0].label);
  EXPECT_THAT(Numbers(sections[0].tiles[0]), ElementsAre(1, 0, 1, 0));
  EXPECT_THAT(Numbers(sections[0].tiles[1]), ElementsAre(2, 0, 1, 0));
  ASSERT_EQ(2u, sections[1].tiles.size());
  EXPECT_EQ("Dots", sections[1].tiles[1].label);
  EXPECT_THAT(Numbers(sections[1].tiles[0]), ElementsAre(2, 1, 1, 0));
  EXPECT_THAT(Numbers(sections[1].tiles[1]), ElementsAre(2, 0, 1, 1));
}

TEST(IsUnavailable, TellsAMissingStageFromAFailure) {
  EXPECT_TRUE(IsUnavailable(EffectError("Dots is not available in this version. (error 512)")));
  EXPECT_FALSE(IsUnavailable(EffectError("out of memory (error 4)")));
}

bool Inside(const Rectangle& r, const SheetLayout& sheet) {
  return r.x >= 0 && r.y >= 0 && r.width > 0 && r.height > 0 && r.x + r.width <= sheet.width &&
         r.y + r.height <= sheet.height;
}

bool Apart(const Rectangle& a, const Rectangle& b) {
  return a.x + a.width <= b.x || b.x + b.width <= a.x || a.y + a.height <= b.y || b.y + b.height <= a.y;
}

TEST(Layout, PlacesEverythingInsideAndApart) {
  for (const auto& [width, height] : {std::pair{480, 270}, {16, 9}, {300, 600}})
    for (const std::vector<int>& sizes : {std::vector{1}, {10, 9}, {3, 1, 7}})
      for (const int columns : {0, 1, 4, 50}) {
        const SheetContent content{width, height, sizes};
        const SheetLayout sheet = columns == 0 ? LayOutForScreen(content) : LayOut(content, columns);
        std::vector<Rectangle> all = {sheet.title};
        ASSERT_EQ(sizes.size(), sheet.sections.size());
        for (std::size_t s = 0; s < sizes.size(); ++s) {
          const SectionLayout& section = sheet.sections[s];
          ASSERT_EQ(static_cast<std::size_t>(sizes[s]), section.pictures.size());
          ASSERT_EQ(section.pictures.size(), section.labels.size());
          all.push_back(section.heading);
          for (std::size_t i = 0; i < section.pictures.size(); ++i) {
            EXPECT_EQ(std::pair(width, height), std::pair(section.pictures[i].width, section.pictures[i].height));
            EXPECT_EQ(section.pictures[i].x, section.labels[i].x);
            EXPECT_LE(section.pictures[i].y + height, section.labels[i].y);
            all.push_back(section.pictures[i]);
            all.push_back(section.labels[i]);
          }
        }
        for (std::size_t i = 0; i < all.size(); ++i) {
          EXPECT_TRUE(Inside(all[i], sheet)) << i;
          for (std::size_t j = 0; j < i; ++j) EXPECT_TRUE(Apart(all[i], all[j])) << i << " and " << j;
        }
      }
}

}  // namespace
}  // namespace quentara::cli
