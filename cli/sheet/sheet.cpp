#include "sheet/sheet.h"

#include <algorithm>
#include <cassert>

#include "sheet/layout.h"

namespace quentara::cli {
namespace {

constexpr std::uint8_t kBackground = 72, kTextShade = 235;

SheetContent ContentOf(const std::vector<PictureSection>& sections) {
  const media::Frame& first = sections.front().pictures.front().frame;
  SheetContent content{first.width, first.height, {}};
  for (const PictureSection& section : sections)
    content.sectionSizes.push_back(static_cast<int>(section.pictures.size()));
  return content;
}

media::Frame GreyFrame(int width, int height) {
  media::Frame frame = media::BlankFrame(width, height, false);
  for (std::size_t i = 0; i < frame.pixels.size(); ++i) frame.pixels[i] = i % 4 == 0 ? 255 : kBackground;
  return frame;
}

/// A sample of a frame on the scale of 0 to 255.
int ByteOf(const media::Frame& frame, int y, int i) {
  if (!frame.deep) return frame.Bytes(y)[i];
  return (std::min<int>(frame.Deep(y)[i], media::kDeepWhite) * 255 + media::kDeepWhite / 2) / media::kDeepWhite;
}

void Place(const media::Frame& picture, const Rectangle& at, media::Frame& sheet) {
  assert(picture.width == at.width && picture.height == at.height);
  for (int y = 0; y < at.height; ++y)
    for (int x = 0; x < at.width; ++x) {
      const int alpha = ByteOf(picture, y, 4 * x);
      for (int c = 1; c < 4; ++c) {
        std::uint8_t& sample = sheet.Bytes(at.y + y)[4 * (at.x + x) + c];
        sample =
            static_cast<std::uint8_t>((alpha * ByteOf(picture, y, 4 * x + c) + (255 - alpha) * sample + 127) / 255);
      }
    }
}

/// The em square for a line of text that fills a box with some air above and below.
int TextSize(const Rectangle& box) {
  return box.height * 2 / 3;
}

}  // namespace

media::Frame DrawSheet(const std::string& title, const std::vector<PictureSection>& sections,
                       const std::optional<int>& columns, const SheetFonts& fonts) {
  const SheetContent content = ContentOf(sections);
  const SheetLayout layout = columns ? LayOut(content, *columns) : LayOutForScreen(content);
  const Font titleFont(fonts.bold, TextSize(layout.title));
  const Font headingFont(fonts.bold, TextSize(layout.sections.front().heading));
  const Font labelFont(fonts.plain, TextSize(layout.sections.front().labels.front()));

  media::Frame sheet = GreyFrame(layout.width, layout.height);
  titleFont.Draw(sheet, layout.title, title, kTextShade);
  for (std::size_t s = 0; s < sections.size(); ++s) {
    const SectionLayout& places = layout.sections[s];
    headingFont.Draw(sheet, places.heading, sections[s].heading, kTextShade);
    for (std::size_t i = 0; i < places.pictures.size(); ++i) {
      Place(sections[s].pictures[i].frame, places.pictures[i], sheet);
      labelFont.Draw(sheet, places.labels[i], sections[s].pictures[i].label, kTextShade);
    }
  }
  return sheet;
}

}  // namespace quentara::cli
