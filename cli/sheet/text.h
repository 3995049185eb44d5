/// Text on pictures, drawn by FreeType in a font that fontconfig finds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "media/frame.h"
#include "sheet/rectangle.h"

namespace quentara::cli {

/// A face in a font file.
struct FontFile {
  std::string path;
  int face = 0;
};

/// The system's sans serif font, or the nearest to it that there is.
/// @throws media::OutputError when no font is installed.
FontFile FindFont(bool bold);

/// A font at one size. Texts are UTF-8; what is not shows as replacement characters.
class Font {
 public:
  /// @param size  of the em square, in pixels, at least 1.
  /// @throws media::OutputError when the file is no font of outlines.
  Font(const FontFile& file, int size);
  ~Font();
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  /// In pixels, rounded up.
  int Width(const std::string& text) const;

  /// Draws a line of text into the box: at its left edge, in the middle of its height. A text that is wider than the
  /// box is cut and ends with an ellipsis. Nothing is drawn outside of the box.
  /// @param canvas  8 bits, opaque.
  /// @param shade  of grey, 0..255.
  void Draw(media::Frame& canvas, const Rectangle& box, const std::string& text, std::uint8_t shade) const;

 private:
  struct Face;
  std::unique_ptr<Face> face_;
};

}  // namespace quentara::cli
