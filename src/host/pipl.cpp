#include "host/pipl.h"

#include <string_view>

#include "host/effect_values.h"

namespace Nivra {
namespace {

using Bytes = std::vector<std::uint8_t>;

void Append(std::uint32_t number, int size, Bytes& bytes) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
}

Bytes Number(std::uint32_t number, int size = 4) {
  Bytes bytes;
  Append(number, size, bytes);
  return bytes;
}

/// A four-character code as the number that its characters spell, the first one highest.
Bytes Code(const char (&code)[5]) {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(code[i]);
  return Number(number);
}

Bytes CountedString(std::string_view text) {
  Bytes bytes = Number(static_cast<std::uint32_t>(text.size()), 1);
  bytes.insert(bytes.end(), text.begin(), text.end());
  return bytes;
}

Bytes TerminatedString(std::string_view text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

struct Property {
  char key[5];
  Bytes value;
};

void Append(const Bytes& part, Bytes& bytes) {
  bytes.insert(bytes.end(), part.begin(), part.end());
}

}  // namespace

std::vector<std::uint8_t> MakePipl() {
  using namespace EffectValues;
  const Property properties[] = {{"kind", Code("eFKT")},
                                 {"name", CountedString(kHostName)},
                                 {"catg", CountedString(kCategory)},
                                 {"8664", TerminatedString(kEntryPoint)},
                                 {"ePVR", Number(kPiplVersion)},
                                 {"eSVR", Number(kInterfaceVersion)},
                                 {"eVER", Number(kVersion)},
                                 {"eINF", Number(0, 2)},
                                 {"eGLO", Number(kOutFlags)},
                                 {"eGL2", Number(kOutFlags2)},
                                 {"eMNA", CountedString(kMatchName)},
                                 {"aeFL", Number(8)},
                                 {"aeRD", Number(0)}};
  Bytes pipl = Number(1, 2);
  Append(0, 4, pipl);
  Append(static_cast<std::uint32_t>(std::size(properties)), 4, pipl);
  for (const auto& [key, value] : properties) {
    Append(Code("8BIM"), pipl);
    Append(Code(key), pipl);
    Append(0, 4, pipl);
    Append(static_cast<std::uint32_t>(value.size()), 4, pipl);
    Append(value, pipl);
    pipl.resize(pipl.size() + (4 - value.size() % 4) % 4);
  }
  return pipl;
}

}  // namespace Nivra
