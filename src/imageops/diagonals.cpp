#include "imageops/diagonals.h"

namespace quentara {

Diagonals::Diagonals(int height, int width) : height_(height), width_(width) {
  std::ptrdiff_t start = 0;
  for (int d = first(); d < end(); ++d) {
    places_.push_back(start - FirstColumn(d));
    start += EndColumn(d) - FirstColumn(d);
  }
}

}  // namespace quentara
