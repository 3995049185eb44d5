#include "outlines/marker_lines.h"

#include <gtest/gtest.h>

#include <string>

#include "blur/small_smooth.h"
#include "imageops/window_definitions.h"
#include "outlines/marker_outlines.h"
#include "render/bands.h"
#include "support/expect_styles.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

// Rows from the top; 0 and 1 stand for the samples 0 and 255.
const std::string kTemplates[] = {"111.0.000", ".1100100.", "0.10010.1", "00.001.11",
                                  "000.0.111", ".0010011.", "1.01001.0", "11.100.00"};

bool Matches(const BytePlane& plane, int y, int x, const std::string& pattern) {
  std::size_t i = 0;
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx, ++i)
      if (pattern[i] != '.' && plane(y + dy, x + dx) != (pattern[i] == '1' ? 255 : 0)) return false;
  return true;
}

/// One pass over the inner pixels, reading `a` and writing a copy. True when it changed something.
template <class Judge>
bool Pass(BytePlane& a, const Judge& becomesPaper) {
  BytePlane b(a.copy());
  bool changed = false;
  for (int y = 1; y < a.rows() - 1; ++y)
    for (int x = 1; x < a.cols() - 1; ++x)
      if (a(y, x) == 0 && becomesPaper(y, x)) b(y, x) = 255, changed = true;
  a = b;
  return changed;
}

bool TemplatePasses(BytePlane& a) {
  bool changed = false;
  for (const std::string& pattern : kTemplates)
    changed |= Pass(a, [&](int y, int x) { return Matches(a, y, x, pattern); });
  return changed;
}

BytePlane ThickenedByDefinition(int thickness, const BytePlane& lines) {
  BytePlane a(lines.copy());
  for (int round = 1; round < thickness; ++round) {
    TemplatePasses(a);
    Pass(a, [&](int y, int x) {
      const int ring[] = {a(y - 1, x - 1), a(y - 1, x), a(y - 1, x + 1), a(y, x + 1),
                          a(y + 1, x + 1), a(y + 1, x), a(y + 1, x - 1), a(y, x - 1)};
      for (int pair = 0; pair < 8; ++pair) {
        int set = 0;
        for (int i = 0; i < 8; ++i) set += i != pair && i != (pair + 1) % 8 && ring[i] == 255;
        if (set == 6) return true;
      }
      return false;
    });
  }
  return a;
}

BytePlane ThinLinesByDefinition(int d, const BytePlane& plane) {
  const int h = plane.rows(), w = plane.cols();
  const auto border = [&](int v, int most, int least) { return most - v >= d || v - least >= d ? 0 : 255; };
  BytePlane a(EachPixel(border, plane, MaxByDefinition(Square(1), plane), MinByDefinition(Square(1), plane)));
  while (TemplatePasses(a)) {
  }
  while (Pass(a, [&](int y, int x) {
    return (a(y - 1, x) == 0) + (a(y + 1, x) == 0) + (a(y, x - 1) == 0) + (a(y, x + 1) == 0) < 2;
  })) {
  }
  const auto zeros = [&](int y, int x, std::initializer_list<std::pair<int, int>> steps) {
    return std::count_if(steps.begin(), steps.end(), [&](const std::pair<int, int>& step) {
      const int j = y + step.first, i = x + step.second;
      return j >= 0 && j < h && i >= 0 && i < w && a(j, i) == 0;
    });
  };
  return PlaneOf(h, w, [&](int y, int x) -> int {
    const bool inRow = y == 0 || y == h - 1, inColumn = x == 0 || x == w - 1;
    if (a(y, x) != 0 || !(inRow || inColumn)) return a(y, x);
    const int down = y == 0 ? 1 : -1, right = x == 0 ? 1 : -1;
    if (inRow && inColumn) return zeros(y, x, {{down, 0}, {0, right}, {down, right}}) == 0 ? 255 : 0;
    if (inRow)
      return zeros(y, x, {{down, -1}, {down, 0}, {down, 1}}) == 0 && zeros(y, x, {{0, -1}, {0, 1}}) < 2 ? 255 : 0;
    return zeros(y, x, {{-1, right}, {0, right}, {1, right}}) == 0 && zeros(y, x, {{-1, 0}, {1, 0}}) < 2 ? 255 : 0;
  });
}

// Each worker thickens a strip of its own, cut off `thickness` rows beyond its band.
BytePlane LinesByDefinition(int thickness, int d, const BytePlane& plane) {
  const auto thicken = [&](const BytePlane& strip) { return ThickenedByDefinition(thickness, strip); };
  return BytePlane(255 - FilterInBands(thickness, thicken, BytePlane(255 - ThinLinesByDefinition(d, plane))));
}

TEST(MarkerLines, EqualTheirDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 12}, {12, 1}, {2, 2}, {2, 9}, {9, 2}, {3, 3}, {64, 40}})
    for (const int difference : {1, 3, 10, 60})
      for (const int thickness : {1, 2, 3, 6}) {
        SCOPED_TRACE(testing::Message() << height << "x" << width << " difference " << difference << " thickness "
                                        << thickness);
        const bool random = rng() % 4 == 0;
        const BytePlane plane(random ? RandomPlane(height, width, rng, 0, 30) : PatchyPlane(height, width, rng));
        ForWorkers([&](int) {
          EXPECT_EQ("", FirstDifference(LinesByDefinition(thickness, difference, plane),
                                        MarkerLines(thickness, difference, plane)));
        });
      }
}

TEST(MarkerOutlines, LayTheSquaredMinimumOfLinesAndTheirMean) {
  std::mt19937 rng(2);
  const ChannelSet picture = RandomPicture(24, 30, rng);
  const BytePlane regions(PatchyPlane(24, 30, rng)), lines(MarkerLines(2, 10, regions));
  const OutlineColor color = MakeOutlineColor({0.0f, 0.0f, 0.0f});
  const auto square = [](float line, float mean) {
    return std::min(line, mean) * std::min(line, mean) / 255.0f + 0.5f;
  };
  const ChannelSet mask = Grey(EachPixel(square, lines, BoxSmooth3(1, lines)));
  const auto outlined = [&] { return MarkerOutlines({false, 0, 0, 0, 2, 10, 0.5f, 0.25f}, color, regions, picture); };
  EXPECT_NE("", FirstDifference(picture, outlined()));
  EXPECT_EQ("", FirstDifference(CompositeOutlineMask(picture, mask, 0.5f, 0.25f, color), outlined()));
  EXPECT_EQ("", StopsAtEachOf(1, outlined));
}

}  // namespace
}  // namespace quentara
