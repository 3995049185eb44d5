// Writes the effect's description to the file that the command line names; the build puts it into the library.
#include <fstream>

#include "host/pipl.h"

int main(int, char* arguments[]) {
  const std::vector<std::uint8_t> pipl = Nivra::MakePipl();
  std::ofstream file(arguments[1], std::ios::binary);
  file.write(reinterpret_cast<const char*>(pipl.data()), static_cast<std::streamsize>(pipl.size()));
  file.close();
  return file ? 0 : 1;
}
