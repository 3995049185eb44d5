#include "host/pipl.h"

#include <gtest/gtest.h>

#include <string>

namespace quentara {
namespace {

using namespace std::string_literals;

TEST(Pipl, HasItsThirteenPropertiesInOrder) {
  const std::vector<std::uint8_t> bytes = Nivra::MakePipl();
  const std::string pipl(bytes.begin(), bytes.end());
  ASSERT_EQ("\1\0\0\0\0\0\15\0\0\0"s, pipl.substr(0, 10));
  const std::pair<std::string, std::string> properties[] = {{"dnik", "TKFe"},
                                                            {"eman", "\20Velmor! Quentara"},
                                                            {"gtac", "\17Kestrane Velmor"},
                                                            {"4668", "PluginEntry\0"s},
                                                            {"RVPe", "\2\0\0\0"s},
                                                            {"RVSe", "\15\0\0\0"s},
                                                            {"REVe", "\0\xBE\x10\0"s},
                                                            {"FNIe", "\0\0"s},
                                                            {"OLGe", "\0\x10\0\6"s},
                                                            {"2LGe", "\x09\x80\0\0"s},
                                                            {"ANMe", "\30Ardelis Velmor! Quentara"},
                                                            {"LFea", "\10\0\0\0"s},
                                                            {"DRea", "\0\0\0\0"s}};
  std::size_t at = 10;
  for (const auto& [key, value] : properties) {
    const std::string length = {static_cast<char>(value.size()), 0, 0, 0};
    EXPECT_EQ("MIB8" + key + "\0\0\0\0"s + length + value, pipl.substr(at, 16 + value.size())) << key;
    at += 16 + value.size();
    for (; (at - 10) % 4 != 0; ++at) EXPECT_EQ('\0', pipl.at(at)) << "padding of " << key;
  }
  EXPECT_EQ(pipl.size(), at);
}

}  // namespace
}  // namespace quentara
