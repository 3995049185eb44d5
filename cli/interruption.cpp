#include "interruption.h"

#include <atomic>
#include <csignal>

#include "errors.h"

namespace quentara::cli {
namespace {

// A signal is the process's own, so this is the one thing that instances share.
std::atomic<int> interruptingSignal{0};
static_assert(std::atomic<int>::is_always_lock_free);

void OnSignal(int signal) {
  int none = 0;
  if (interruptingSignal.compare_exchange_strong(none, signal)) return;
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

void WatchForInterruption() {
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int InterruptingSignal() {
  return interruptingSignal;
}

void CheckInterruption() {
  if (InterruptingSignal() != 0) throw Cancelled();
}

}  // namespace quentara::cli
