#include "sheet/sheet.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "sheet/layout.h"
#include "sheet/text.h"
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

TEST(Layout, ForAScreenPrefersFullRowsNearItsShape) {
  const auto columns = [](int width, int height, std::vector<int> sizes) {
    const SheetLayout sheet = LayOutForScreen({width, height, std::move(sizes)});
    const std::vector<Rectangle>& pictures = sheet.sections[0].pictures;
    return std::count_if(pictures.begin(), pictures.end(), [&](const auto& r) { return r.y == pictures[0].y; });
  };
  EXPECT_EQ(5, columns(480, 270, {10, 10}));
  EXPECT_EQ(5, columns(480, 480, {10, 10}));
  EXPECT_EQ(1, columns(480, 270, {1}));
}

media::Frame Canvas(int width, int height) {
  media::Frame canvas = media::BlankFrame(width, height, false);
  for (std::size_t i = 0; i < canvas.pixels.size(); i += 4) canvas.pixels[i] = 255;
  return canvas;
}

/// Where a frame differs from an empty canvas.
Rectangle Ink(const media::Frame& frame) {
  int left = frame.width, top = frame.height, right = 0, bottom = 0;
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x)
      if (frame.Bytes(y)[4 * x + 1] != 0) {
        left = std::min(left, x), right = std::max(right, x + 1);
        top = std::min(top, y), bottom = std::max(bottom, y + 1);
      }
  return {left, top, right - left, bottom - top};
}

TEST(Font, DrawsInsideItsBoxAndCutsWhatDoesNotFit) {
  const Font font(FindFont(false), 24);
  const auto drawn = [&](const std::string& text, int width) {
    media::Frame canvas = Canvas(400, 60);
    font.Draw(canvas, {20, 10, width, 40}, text, 200);
    return canvas;
  };
  EXPECT_GT(font.Width("Poster Paint"), font.Width("Poster"));
  const Rectangle whole = Ink(drawn("Poster Paint", 360));
  EXPECT_NEAR(20, whole.x, 4);
  EXPECT_NEAR(font.Width("Poster Paint"), whole.width, 6);
  EXPECT_NEAR(30, whole.y + whole.height / 2, 6);
  for (const int width : {1, 12, 60, 100}) {
    const Rectangle cut = Ink(drawn("Poster Paint", width));
    EXPECT_TRUE(cut.width <= 0 || (cut.x >= 20 && cut.x + cut.width <= 20 + width)) << width;
  }
  const std::string pos = "Pos", dots = "\u2026";
  EXPECT_EQ(drawn(pos + dots, 360).pixels, drawn("Poster Paint", font.Width(pos + dots)).pixels);
  EXPECT_EQ(drawn("\ufffd!", 360).pixels, drawn("\xff!", 360).pixels);
}

TEST(DrawSheet, ShowsDeepAndTransparentPicturesOverItsGrey) {
  media::Frame deep = media::BlankFrame(200, 3, true);
  for (int i = 0; i < 4 * 200 * 3; ++i) deep.Deep(0)[i] = media::kDeepWhite;
  media::Frame half = Canvas(200, 3);
  for (std::size_t i = 0; i < half.pixels.size(); i += 4) half.pixels[i] = 128;
  const media::Frame sheet = DrawSheet("", {{"", {{"", deep}, {"", half}}}}, 2, {});
  const SectionLayout places = LayOut({200, 3, {2}}, 2).sections[0];
  const auto sample = [&](const Rectangle& r) { return sheet.Bytes(r.y + 2)[4 * (r.x + r.width - 1) + 1]; };
  EXPECT_EQ(255, sample(places.pictures[0]));
  const int grey = sheet.pixels[1];
  EXPECT_GT(grey, 0);
  EXPECT_NEAR(grey * 127 / 255.0, sample(places.pictures[1]), 1);
  EXPECT_TRUE(std::all_of(sheet.Bytes(0), sheet.Bytes(0) + sheet.RowBytes(),
                          [&](std::uint8_t s) { return s == grey || s == 255; }));
}

}  // namespace
}  // namespace quentara::cli
