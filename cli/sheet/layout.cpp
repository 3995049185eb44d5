#include "sheet/layout.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace quentara::cli {
namespace {

constexpr double kScreenAspect = 1.55;

/// Places of the rows that hold no picture, as a share of all places.
double EmptyShare(const SheetContent& content, int columns) {
  int filled = 0, places = 0;
  for (const int size : content.sectionSizes) {
    filled += size;
    places += (size + columns - 1) / columns * columns;
  }
  return 1.0 - static_cast<double>(filled) / places;
}

/// Full rows count for more than the shape.
double Awkwardness(const SheetContent& content, int columns) {
  const SheetLayout layout = LayOut(content, columns);
  const double aspect = static_cast<double>(layout.width) / layout.height;
  return std::abs(std::log(aspect / kScreenAspect)) + 2 * EmptyShare(content, columns);
}

int LargestSection(const SheetContent& content) {
  return *std::max_element(content.sectionSizes.begin(), content.sectionSizes.end());
}

}  // namespace

SheetLayout LayOut(const SheetContent& content, int columns) {
  assert(columns >= 1 && !content.sectionSizes.empty());
  columns = std::min(columns, LargestSection(content));
  // Tiny pictures get cells wide enough for a label to be read.
  const int cell = std::max(content.pictureWidth, 120);
  const int label = std::max(cell / 12, 16);
  const int gap = label * 2 / 3;
  const int inner = columns * cell + (columns - 1) * gap;

  SheetLayout layout;
  layout.width = inner + 2 * gap;
  layout.title = {gap, gap, inner, label * 7 / 4};
  int y = layout.title.y + layout.title.height;
  for (const int size : content.sectionSizes) {
    SectionLayout section;
    section.heading = {gap, y + gap / 2, inner, label * 3 / 2};
    y = section.heading.y + section.heading.height;
    for (int i = 0; i < size; ++i) {
      if (i > 0 && i % columns == 0) y += content.pictureHeight + label + gap / 2;
      const int x = gap + i % columns * (cell + gap);
      section.pictures.push_back({x, y, content.pictureWidth, content.pictureHeight});
      section.labels.push_back({x, y + content.pictureHeight, cell, label});
    }
    y += content.pictureHeight + label + gap / 2;
    layout.sections.push_back(std::move(section));
  }
  layout.height = y + gap / 2;
  return layout;
}

SheetLayout LayOutForScreen(const SheetContent& content) {
  int best = 1;
  for (int columns = 2; columns <= LargestSection(content); ++columns)
    if (Awkwardness(content, columns) < Awkwardness(content, best)) best = columns;
  return LayOut(content, best);
}

}  // namespace quentara::cli
