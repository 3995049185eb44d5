/// The direction of a window that is a line.
#pragma once

namespace quentara {

enum class LineDirection : int { Vertical = 0, Horizontal = 1 };

}  // namespace quentara
