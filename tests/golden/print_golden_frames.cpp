// Prints the digests of the golden frames, as tests/golden/frames.txt holds them.
#include <cstdio>
#include <exception>

#include "golden/golden_frames.h"

int main() {
  try {
    for (const std::string& line : quentara::GoldenLines()) std::puts(line.c_str());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "print_golden_frames: %s\n", error.what());
    return 1;
  }
}
