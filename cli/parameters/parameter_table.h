/// The effect's parameter list: looking rows up by the names that users see, and the values set for a render.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "parameters/parameter.h"

namespace quentara::cli {

/// One value for each row of a table, in the table's order; rows without a value hold one that nothing reads.
using ParameterValues = std::vector<Value>;

class ParameterTable {
 public:
  /// @param rows  in list order; row i has index i + 1.
  explicit ParameterTable(std::vector<Parameter> rows) : rows_(std::move(rows)) {}

  const std::vector<Parameter>& Rows() const { return rows_; }

  /// The row that a user means: by "Group/Name"; by the name alone where that is enough, which stands for a row outside
  /// of any group, for a group's check box of the group's own name, or for a name that only one row has; or by the
  /// identifier as a number. Case and blanks at the ends do not matter.
  /// @throws UsageError that gives the nearest names, or the candidates where several rows have the name.
  const Parameter& Find(std::string_view name) const;

  ParameterValues Defaults() const;

  /// Carries out one "NAME=VALUE" on values of this table.
  /// @throws UsageError, with `values` unchanged.
  void Assign(std::string_view assignment, ParameterValues& values) const;

 private:
  [[noreturn]] void FailUnknown(std::string_view name) const;

  std::vector<Parameter> rows_;
};

}  // namespace quentara::cli
