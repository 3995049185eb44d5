/// Progress of a render, in its ten parts.
#pragma once

#include "render/plugin_host.h"

namespace quentara {

/// Tells the host that `done` of the ten parts are finished, then asks whether to stop. @throws Plugin::Interrupted
inline void Report(int done) {
  Plugin::ReportProgress(done, 10);
  Plugin::CheckStop();
}

}  // namespace quentara
