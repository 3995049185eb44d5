/// Translation between the host interface's parameter records and the parameter list.
#pragma once

#include <string>
#include <vector>

#include "AE_Effect.h"
#include "parameters/parameter_table.h"

namespace quentara::cli {

/// A parameter as an effect defined it, with its texts copied out of the effect's memory.
struct ParameterDefinition {
  PF_ParamDef record;
  std::string text;  ///< a popup's choices joined by '|', or the text beside a check box
};

/// Copies a definition.
/// @return 0, PF_Err_UNRECOGNIZED_PARAM_TYPE for a kind that this host does not offer, PF_Err_BAD_CALLBACK_PARAM for a
/// popup whose choices are not as many as it says or whose default is none of them.
PF_Err CopyDefinition(const PF_ParamDef& record, ParameterDefinition& copy);

/// The parameter list that the definitions make, in their order.
std::vector<Parameter> DescribeDefinitions(const std::vector<ParameterDefinition>& definitions);

/// The records of a render: place 0 for the input layer, then each definition with its value.
/// The texts stay those of `definitions`, which must live as long as the records.
std::vector<PF_ParamDef> MakeRecords(const std::vector<ParameterDefinition>& definitions,
                                     const ParameterValues& values);

}  // namespace quentara::cli
