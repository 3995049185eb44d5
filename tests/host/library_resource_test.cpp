// What a Windows host reads from the library's file.
#include <windows.h>
// After windows.h.
#include <gtest/gtest.h>

#include "host/pipl.h"

namespace quentara {
namespace {

TEST(Library, CarriesItsDescription) {
  const HMODULE library = LoadLibraryExA(QUENTARA_EFFECT, nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(nullptr, library);
  const HRSRC place = FindResourceExA(library, "PIPL", MAKEINTRESOURCEA(16000), 1033);
  ASSERT_NE(nullptr, place);
  const auto* const bytes = static_cast<const std::uint8_t*>(LockResource(LoadResource(library, place)));
  EXPECT_EQ(Nivra::MakePipl(), std::vector<std::uint8_t>(bytes, bytes + SizeofResource(library, place)));
  FreeLibrary(library);
}

}  // namespace
}  // namespace quentara
