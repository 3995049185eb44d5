/// A host whose user cancels the render at a chosen moment.
#pragma once

#include <atomic>
#include <string>

#include "render/standalone_host.h"

namespace quentara {

class StoppingHost : public StandaloneHost {
 public:
  /// @param stopAt  the stop check, counted from 1, that throws Plugin::Interrupted; 0 for none.
  explicit StoppingHost(int stopAt = 0, int threads = 1) : StandaloneHost(threads), stopAt_(stopAt) {}

  void CheckStop(const int*) override {
    if (++checks_ == stopAt_) throw Plugin::Interrupted();
  }
  /// How often a stage has looked so far.
  int checks() const { return checks_; }

 private:
  const int stopAt_;
  std::atomic<int> checks_{0};
};

/// "" when `stage` makes `checks` stop checks in a whole run and lets a stop at each one of them through.
template <class Stage>
std::string StopsAtEachOf(int checks, const Stage& stage) {
  for (int stopAt = 0; stopAt <= checks; ++stopAt) {
    StoppingHost host(stopAt, 2);
    const Plugin::HostScope scope(host);
    bool stopped = false;
    try {
      stage();
    } catch (const Plugin::Interrupted&) {
      stopped = true;
    }
    if (stopped != (stopAt > 0) || host.checks() != (stopAt > 0 ? stopAt : checks))
      return "stop at check " + std::to_string(stopAt) + ": " + std::to_string(host.checks()) + " checks made";
  }
  return "";
}

}  // namespace quentara
