/// Walks the host's parameters in the order of the table.
#pragma once

#include <cassert>
#include <cstddef>

#include "host/param_table.h"

namespace Nivra {

/// A place in the table and the place in the host's list that belongs to it. All arithmetic with indices is here.
class ParamCursor {
 public:
  /// @param params     the host's list, beginning with the input layer.
  /// @param hasGroups  whether the list has entries for group rows.
  ParamCursor(const PF_ParamDef* const* params, bool hasGroups) : params_(params), hasGroups_(hasGroups) {}

  /// The next parameter that holds a value, which the table has as one of `kind`.
  const PF_ParamDef& Next([[maybe_unused]] ParamKind kind) {
    for (; IsGroup(kParamTable[row_].kind); ++row_) index_ += hasGroups_ ? 1 : 0;
    assert(kParamTable[row_].kind == kind);
    ++row_;
    return *params_[index_++];
  }

 private:
  const PF_ParamDef* const* params_;
  bool hasGroups_;
  std::size_t row_ = 0;
  std::size_t index_ = 1;
};

}  // namespace Nivra
