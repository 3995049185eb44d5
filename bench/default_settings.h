/// The settings of a frame as the effect reads them from parameters at their defaults.
#pragma once

#include <vector>

#include "host/settings_reader.h"

namespace quentara {

/// A popup or check box that does not stand at its default.
struct Choice {
  int id;     ///< of the parameter
  int value;  ///< popup: 1-based choice; check box: 0 or 1
};

/// @param frame  its `settings.frame` stays as it is; must outlive the use of its `settings`.
void ReadDefaults(const std::vector<Choice>& changes, Nivra::FrameSettings& frame);

}  // namespace quentara
