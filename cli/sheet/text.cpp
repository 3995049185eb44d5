#include "sheet/text.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <algorithm>
#include FT_FREETYPE_H

#include "media/errors.h"

namespace quentara::cli {
namespace {

template <auto Function>
struct Release {
  template <class T>
  void operator()(T* object) const {
    Function(object);
  }
};
template <class T, auto Function>
using Owned = std::unique_ptr<T, Release<Function>>;

constexpr char32_t kEllipsis = U'\u2026';
constexpr char32_t kReplacement = U'\ufffd';

std::u32string Characters(const std::string& text) {
  std::u32string characters;
  const auto* at = reinterpret_cast<const FcChar8*>(text.data());
  const auto* const end = at + text.size();
  while (at < end) {
    FcChar32 character;
    const int length = FcUtf8ToUcs4(at, &character, static_cast<int>(end - at));
    characters.push_back(length > 0 ? static_cast<char32_t>(character) : kReplacement);
    at += std::max(length, 1);
  }
  return characters;
}

/// The part of a glyph's pixels that lies in the box, mixed into the canvas by its coverage.
void Blend(const FT_Bitmap& glyph, int left, int top, const Rectangle& box, std::uint8_t shade, media::Frame& canvas) {
  const int firstX = std::max({left, box.x, 0}), firstY = std::max({top, box.y, 0});
  const int endX = std::min({left + static_cast<int>(glyph.width), box.x + box.width, canvas.width});
  const int endY = std::min({top + static_cast<int>(glyph.rows), box.y + box.height, canvas.height});
  for (int y = firstY; y < endY; ++y) {
    const unsigned char* coverage = glyph.buffer + static_cast<std::ptrdiff_t>(y - top) * glyph.pitch;
    for (int x = firstX; x < endX; ++x)
      for (int c = 1; c < 4; ++c) {
        std::uint8_t& sample = canvas.Bytes(y)[4 * x + c];
        const int share = coverage[x - left];
        sample = static_cast<std::uint8_t>((share * shade + (255 - share) * sample + 127) / 255);
      }
  }
}

}  // namespace

FontFile FindFont(bool bold) {
  const Owned<FcConfig, FcConfigDestroy> config(FcInitLoadConfigAndFonts());
  const Owned<FcPattern, FcPatternDestroy> wanted(
      FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, "sans-serif", FC_WEIGHT, FcTypeInteger,
                     bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR, FC_OUTLINE, FcTypeBool, FcTrue, nullptr));
  FcConfigSubstitute(config.get(), wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result;
  const Owned<FcPattern, FcPatternDestroy> found(FcFontMatch(config.get(), wanted.get(), &result));
  FcChar8* path = nullptr;
  if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &path) != FcResultMatch)
    throw media::OutputError("there is no font for the labels; install one, such as Debian's fonts-dejavu-core");
  FontFile file{reinterpret_cast<const char*>(path), 0};
  FcPatternGetInteger(found.get(), FC_INDEX, 0, &file.face);
  return file;
}

struct Font::Face {
  Owned<FT_LibraryRec_, FT_Done_FreeType> library;
  Owned<FT_FaceRec_, FT_Done_Face> face;

  /// Loads and renders a character at a position between pixels, in 1/65536 pixel; null for what the font cannot draw.
  FT_GlyphSlot Glyph(char32_t character, FT_Pos position) const {
    FT_Vector shift{(position & 0xffff) >> 10, 0};
    FT_Set_Transform(face.get(), nullptr, &shift);
    const bool loaded = FT_Load_Char(face.get(), character, FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT) == 0;
    return loaded ? face->glyph : nullptr;
  }

  /// In 1/65536 pixel.
  FT_Pos Advance(char32_t character) const {
    const FT_GlyphSlot glyph = Glyph(character, 0);
    return glyph ? glyph->linearHoriAdvance : 0;
  }

  FT_Pos Width(const std::u32string& text) const {
    FT_Pos width = 0;
    for (const char32_t character : text) width += Advance(character);
    return width;
  }

  std::u32string Fitted(std::u32string text, int width) const {
    const FT_Pos room = static_cast<FT_Pos>(width) << 16;
    if (Width(text) <= room) return text;
    const FT_Pos ellipsis = Advance(kEllipsis);
    while (!text.empty() && Width(text) + ellipsis > room) text.pop_back();
    while (!text.empty() && text.back() == U' ') text.pop_back();
    return text + kEllipsis;
  }
};

Font::Font(const FontFile& file, int size) : face_(std::make_unique<Face>()) {
  const auto check = [&](FT_Error error) {
    if (error != 0) throw media::OutputError(file.path + ": is not a font that labels can be drawn in");
  };
  FT_Library library;
  check(FT_Init_FreeType(&library));
  face_->library.reset(library);
  FT_Face face;
  check(FT_New_Face(library, file.path.c_str(), file.face, &face));
  face_->face.reset(face);
  check(FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size)));
}

Font::~Font() = default;

int Font::Width(const std::string& text) const {
  return static_cast<int>((face_->Width(Characters(text)) + 0xffff) >> 16);
}

void Font::Draw(media::Frame& canvas, const Rectangle& box, const std::string& text, std::uint8_t shade) const {
  const FT_Size_Metrics& metrics = face_->face->size->metrics;
  const int baseline = box.y + static_cast<int>((box.height * 64 + metrics.ascender + metrics.descender) / 128);
  FT_Pos position = static_cast<FT_Pos>(box.x) << 16;
  for (const char32_t character : face_->Fitted(Characters(text), box.width))
    if (const FT_GlyphSlot glyph = face_->Glyph(character, position)) {
      const int left = static_cast<int>(position >> 16) + glyph->bitmap_left;
      Blend(glyph->bitmap, left, baseline - glyph->bitmap_top, box, shade, canvas);
      position += glyph->linearHoriAdvance;
    }
}

}  // namespace quentara::cli
