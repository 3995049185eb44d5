/// Growing lines of a two-valued plane.
#pragma once

#include "render/plane.h"

namespace quentara {

/// Grows lines, 255 on paper of 0, `rounds` times. A round applies the eight line templates in turn, then fills holes:
/// paper becomes line where all ring neighbours but one pair next to each other are line. Every pass reads what the
/// pass before has left; the first and last row and column stay as they are. Runs on the calling thread.
BytePlane ThickenLines(int rounds, const BytePlane& lines);

}  // namespace quentara
