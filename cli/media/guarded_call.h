/// C libraries that report errors by a jump.
#pragma once

#include <csetjmp>

namespace quentara::media {

/// Runs calls() and tells whether it came to its end: a library leaves it by longjmp to `escape` on an error. `calls`
/// must own nothing with a destructor, which the jump would skip.
template <class Calls>
bool RunGuarded(std::jmp_buf& escape, const Calls& calls) {
  if (setjmp(escape) != 0) return false;
  calls();
  return true;
}

}  // namespace quentara::media
