/// Where everything on a contact sheet goes.
#pragma once

#include <vector>

#include "sheet/rectangle.h"

namespace quentara::cli {

/// What a sheet holds: sections of pictures, all pictures of one size.
struct SheetContent {
  int pictureWidth = 1;
  int pictureHeight = 1;
  std::vector<int> sectionSizes;  ///< pictures of each section, at least 1 each; at least one section
};

struct SectionLayout {
  Rectangle heading;
  std::vector<Rectangle> pictures;
  std::vector<Rectangle> labels;  ///< one below each picture
};

struct SheetLayout {
  int width = 0;
  int height = 0;
  Rectangle title;
  std::vector<SectionLayout> sections;
};

/// A title, then each section as a heading and rows of `columns` pictures, or fewer where no section has that many.
/// The heights of the text boxes and the gaps follow the width of the pictures; nothing overlaps.
/// @param columns  at least 1.
SheetLayout LayOut(const SheetContent& content, int columns);

/// LayOut with the number of columns that brings the sheet near the shape of a screen, between 4:3 and 16:9, and leaves
/// few places of its last rows empty.
SheetLayout LayOutForScreen(const SheetContent& content);

}  // namespace quentara::cli
