/// The picture of a contact sheet.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "media/frame.h"
#include "sheet/text.h"

namespace quentara::cli {

struct LabelledPicture {
  std::string label;
  media::Frame frame;  ///< of any depth; shown over the sheet's grey where it is transparent
};

struct PictureSection {
  std::string heading;
  std::vector<LabelledPicture> pictures;  ///< at least one
};

struct SheetFonts {
  FontFile plain = FindFont(false);
  FontFile bold = FindFont(true);
};

/// An opaque picture of 8 bits: the title, and each section as a heading and its pictures with a label below each.
/// @param sections  at least one; all pictures are of one size.
/// @param columns  pictures in a row; none for a sheet in the shape of a screen.
media::Frame DrawSheet(const std::string& title, const std::vector<PictureSection>& sections,
                       const std::optional<int>& columns, const SheetFonts& fonts);

}  // namespace quentara::cli
