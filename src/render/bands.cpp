#include "render/bands.h"

namespace quentara {

int BandCount(int height, int radius) {
  int count = Plugin::ThreadCount();
  while (count > 1 && height / count <= 2 * radius) --count;
  return count;
}

}  // namespace quentara
