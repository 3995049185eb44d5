/// result(x, y) = plane(y, x): rows become columns.
#pragma once

#include "render/plane.h"

namespace quentara {

/// @param plane  height x width, of any size.
/// @return width x height.
BytePlane Transpose(const BytePlane& plane);

}  // namespace quentara
