#include "sheet/sheet.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "cli/small_table.h"
#include "sheet/layout.h"
#include "sheet/text.h"
#include "sheet/tiles.h"

namespace quentara::cli {
namespace {

using testing::ElementsAre;

/// What a tile sets: of "Roto", the switch "Soft Outlines", "Reuse" in its group, and the switch "Dots".
std::vector<double> Settings(const Tile& tile) {
  return {tile.values[0].number, tile.values[6].number, tile.values[8].number, tile.values[9].number};
}

TEST(ListTiles, ShowsStylesWithoutSwitchesAndEachSwitchAloneOverTheStyleSet) {
  const ParameterTable table = SmallTable();
  ParameterValues base = table.Defaults();
  for (const char* assignment : {"Roto=No Roto", "Reuse=on", "Dots=on"}) table.Assign(assignment, base);
  const std::vector<TileSection> sections = ListTiles(table, base);
  ASSERT_EQ(2u, sections.size());
  EXPECT_EQ("Outlines and patterns over No Roto", sections[1].heading);
  const std::vector<Tile>&styles = sections[0].tiles, &switches = sections[1].tiles;
  ASSERT_EQ(std::pair(std::size_t{3}, std::size_t{2}), std::pair(styles.size(), switches.size()));
  EXPECT_EQ("Flat Shaded, Dots", styles[0].label + ", " + switches[1].label);
  EXPECT_THAT(Settings(styles[0]), ElementsAre(1, 0, 1, 0));
  EXPECT_THAT(Settings(styles[1]), ElementsAre(2, 0, 1, 0));
  EXPECT_THAT(Settings(switches[0]), ElementsAre(2, 1, 1, 0));
  EXPECT_THAT(Settings(switches[1]), ElementsAre(2, 0, 1, 1));
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
          const auto& [heading, pictures, labels] = sheet.sections[s];
          ASSERT_EQ(static_cast<std::size_t>(sizes[s]), pictures.size());
          ASSERT_EQ(pictures.size(), labels.size());
          all.push_back(heading);
          all.insert(all.end(), labels.begin(), labels.end());
          all.insert(all.end(), pictures.begin(), pictures.end());
          for (std::size_t i = 0; i < pictures.size(); ++i) {
            EXPECT_EQ(std::pair(width, height), std::pair(pictures[i].width, pictures[i].height));
            EXPECT_EQ(std::pair(pictures[i].x, pictures[i].y + height), std::pair(labels[i].x, labels[i].y));
          }
        }
        for (std::size_t i = 0; i < all.size(); ++i) {
          const Rectangle& r = all[i];
          EXPECT_TRUE(std::min({r.x, r.y, sheet.width - r.x - r.width, sheet.height - r.y - r.height}) >= 0 &&
                      std::min(r.width, r.height) > 0)
              << i;
          for (std::size_t j = 0; j < i; ++j) EXPECT_TRUE(Apart(r, all[j])) << i << " and " << j;
        }
      }
}

TEST(Layout, ForAScreenPrefersFullRowsNearItsShape) {
  const auto columns = [](int width, int height, const std::vector<int>& sizes) {
    const std::vector<Rectangle> pictures = LayOutForScreen({width, height, sizes}).sections[0].pictures;
    return std::count_if(pictures.begin(), pictures.end(), [&](const auto& r) { return r.y == pictures[0].y; });
  };
  EXPECT_EQ(5, columns(480, 270, {10, 10}));
  EXPECT_EQ(5, columns(480, 480, {10, 10}));
  EXPECT_EQ(1, columns(480, 270, {1}));
}

/// A frame of 8 bits in one shade of grey.
media::Frame Filled(int width, int height, std::uint8_t alpha, std::uint8_t shade) {
  media::Frame frame = media::BlankFrame(width, height, false);
  for (std::size_t i = 0; i < frame.pixels.size(); ++i) frame.pixels[i] = i % 4 == 0 ? alpha : shade;
  return frame;
}

/// Where the place on a frame differs from one shade.
Rectangle Ink(const media::Frame& frame, const Rectangle& place, int shade) {
  int left = frame.width, top = frame.height, right = 0, bottom = 0;
  for (int y = place.y; y < place.y + place.height; ++y)
    for (int x = place.x; x < place.x + place.width; ++x)
      if (frame.Bytes(y)[4 * x + 1] != shade) {
        left = std::min(left, x), right = std::max(right, x + 1);
        top = std::min(top, y), bottom = std::max(bottom, y + 1);
      }
  return {left, top, right - left, bottom - top};
}

TEST(Font, DrawsInsideItsBoxAndCutsWhatDoesNotFit) {
  const Font font(FindFont(false), 24);
  const auto drawn = [&](const std::string& text, int width) {
    media::Frame canvas = Filled(400, 60, 255, 0);
    font.Draw(canvas, {20, 10, width, 40}, text, 200);
    return canvas;
  };
  const auto ink = [&](int width) { return Ink(drawn("Poster Paint", width), {0, 0, 400, 60}, 0); };
  EXPECT_GT(font.Width("Poster Paint"), font.Width("Poster"));
  EXPECT_NEAR(20, ink(360).x, 4);
  EXPECT_NEAR(font.Width("Poster Paint"), ink(360).width, 6);
  EXPECT_NEAR(30, ink(360).y + ink(360).height / 2, 6);
  for (const int width : {1, 12, 60, 100})
    EXPECT_TRUE(ink(width).width <= 0 || (ink(width).x >= 20 && ink(width).x + ink(width).width <= 20 + width));
  const std::string pos = "Pos", dots = "\u2026";
  EXPECT_EQ(drawn(pos + dots, 360).pixels, drawn("Poster Paint", font.Width(pos + dots)).pixels);
  EXPECT_EQ(drawn("\ufffd!", 360).pixels, drawn("\xff!", 360).pixels);
}

TEST(DrawSheet, ShowsItsTextsAndDeepAndTransparentPicturesOverItsGrey) {
  media::Frame deep = media::BlankFrame(200, 3, true);
  std::fill_n(deep.Deep(0), 4 * 200 * 3, media::kDeepWhite);
  const media::Frame sheet =
      DrawSheet("Title", {{"Heading", {{"Deep", deep}, {"Half", Filled(200, 3, 128, 0)}}}}, 2, {});
  const SheetLayout layout = LayOut({200, 3, {2}}, 2);
  const auto& [heading, pictures, labels] = layout.sections[0];
  const int grey = sheet.pixels[1];
  EXPECT_GT(grey, 0);
  for (const Rectangle& text : {layout.title, heading, labels[0], labels[1]})
    EXPECT_GT(Ink(sheet, text, grey).width, 9);
  EXPECT_EQ(255, sheet.Bytes(pictures[0].y)[4 * pictures[0].x + 1]);
  EXPECT_NEAR(grey * 127 / 255.0, sheet.Bytes(pictures[1].y)[4 * pictures[1].x + 1], 1);
  EXPECT_TRUE(std::all_of(sheet.Bytes(0), sheet.Bytes(0) + sheet.RowBytes(),
                          [&](std::uint8_t s) { return s == grey || s == 255; }));
}

}  // namespace
}  // namespace quentara::cli
