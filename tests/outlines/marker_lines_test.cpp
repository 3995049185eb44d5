#include "outlines/marker_lines.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "blur/small_smooth.h"
#include "outlines/marker_outlines.h"
#include "render/bands.h"
#include "render/standalone_host.h"
#include "support/planes.h"
#include "support/stopping_host.h"

namespace quentara {
namespace {

// Rows from the top; 0 and 1 stand for the samples 0 and 255.
const std::array<std::string, 8> kTemplates = {"111.0.000", ".1100100.", "0.10010.1", "00.001.11",
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

void ThickenByDefinition(int thickness, BytePlane& a) {
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
}

BytePlane ThinLinesByDefinition(int d, const BytePlane& plane) {
  const int h = plane.rows(), w = plane.cols();
  const auto inside = [&](int y, int x) { return y >= 0 && y < h && x >= 0 && x < w; };
  BytePlane a(h, w);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      a(y, x) = 255;
      for (int j = y - 1; j <= y + 1; ++j)
        for (int i = x - 1; i <= x + 1; ++i)
          if (inside(j, i) && std::abs(plane(j, i) - plane(y, x)) >= d) a(y, x) = 0;
    }
  while (TemplatePasses(a)) {
  }
  while (Pass(a, [&](int y, int x) {
    return (a(y - 1, x) == 0) + (a(y + 1, x) == 0) + (a(y, x - 1) == 0) + (a(y, x + 1) == 0) < 2;
  })) {
  }
  const BytePlane b(a.copy());
  const auto zeros = [&](int y, int x, std::initializer_list<std::pair<int, int>> steps) {
    int count = 0;
    for (const auto& [dy, dx] : steps) count += inside(y + dy, x + dx) && b(y + dy, x + dx) == 0;
    return count;
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const bool inRow = y == 0 || y == h - 1, inColumn = x == 0 || x == w - 1;
      if (b(y, x) != 0 || !(inRow || inColumn)) continue;
      const int down = y == 0 ? 1 : -1, right = x == 0 ? 1 : -1;
      const bool loose =
          inRow && inColumn ? zeros(y, x, {{down, 0}, {0, right}, {down, right}}) == 0
          : inRow           ? zeros(y, x, {{down, -1}, {down, 0}, {down, 1}}) == 0 && zeros(y, x, {{0, -1}, {0, 1}}) < 2
                  : zeros(y, x, {{-1, right}, {0, right}, {1, right}}) == 0 && zeros(y, x, {{-1, 0}, {1, 0}}) < 2;
      if (loose) a(y, x) = 255;
    }
  return a;
}

BytePlane LinesByDefinition(int thickness, int d, const BytePlane& plane) {
  BytePlane lines(ThinLinesByDefinition(d, plane));
  lines = 255 - lines;
  // Each worker thickens a strip of its own, cut off `thickness` rows beyond its band.
  int count = Plugin::ThreadCount();
  while (count > 1 && plane.rows() / count <= 2 * thickness) --count;
  const int band = plane.rows() / count;
  BytePlane result(plane.rows(), plane.cols());
  for (int i = 0; i < count; ++i) {
    const int start = band * i, end = i == count - 1 ? plane.rows() : start + band;
    const int from = std::max(start - thickness, 0), to = std::min(end + thickness, plane.rows());
    BytePlane strip(lines(blitz::Range(from, to - 1), blitz::Range::all()).copy());
    strip.reindexSelf(blitz::shape(0, 0));
    ThickenByDefinition(thickness, strip);
    for (int y = start; y < end; ++y)
      for (int x = 0; x < plane.cols(); ++x) result(y, x) = static_cast<unsigned char>(255 - strip(y - from, x));
  }
  return result;
}

TEST(MarkerLines, EqualTheirDefinitionWithAnyWorkers) {
  std::mt19937 rng(1);
  for (const auto& [height, width] : {std::pair{1, 1}, {1, 12}, {12, 1}, {2, 2}, {2, 9}, {9, 2}, {3, 3}, {64, 40}})
    for (const int difference : {1, 3, 10, 60})
      for (const int thickness : {1, 2, 3, 6})
        for (const int workers : {1, 2, 7}) {
          SCOPED_TRACE(testing::Message() << height << "x" << width << " difference " << difference << " thickness "
                                          << thickness << " workers " << workers);
          StandaloneHost host(workers);
          const Plugin::HostScope scope(host);
          const BytePlane plane(rng() % 4 == 0 ? RandomPlane(height, width, rng, 0, 30)
                                               : PatchyPlane(height, width, rng));
          EXPECT_EQ("", FirstDifference(LinesByDefinition(thickness, difference, plane),
                                        MarkerLines(thickness, difference, plane)));
        }
}

TEST(MarkerOutlines, LayTheSquaredMinimumOfLinesAndTheirMean) {
  std::mt19937 rng(2);
  const ChannelSet picture = RandomPicture(24, 30, rng);
  const BytePlane regions(PatchyPlane(24, 30, rng));
  const MarkerOutlineSettings settings = {false, 0, 0, 0, 2, 10, 0.5f, 0.25f};
  const OutlineColor color = MakeOutlineColor({0.0f, 0.0f, 0.0f});
  BytePlane mask(MarkerLines(2, 10, regions));
  const BytePlane smooth(BoxSmooth3(1, mask));
  mask = where(smooth < mask, smooth, mask);
  mask = blitz::cast<unsigned char>(blitz::cast<float>(mask) * mask / 255.0f + 0.5f);
  const ChannelSet expected = CompositeOutlineMask(picture, ChannelSet("L", 30, 24, mask), 0.5f, 0.25f, color);
  EXPECT_NE("", FirstDifference(picture, expected));
  EXPECT_EQ("", FirstDifference(expected, MarkerOutlines(settings, color, regions, picture)));
  EXPECT_EQ("", StopsAtEachOf(1, [&] { MarkerOutlines(settings, color, regions, picture); }));
}

}  // namespace
}  // namespace quentara
