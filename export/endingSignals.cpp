#include "export/endingSignals.hpp"

#include <algorithm>
#include <array>

namespace {

// Those that do not end a program, and those that nobody can handle.
constexpr std::array others{SIGCHLD, SIGCONT, SIGURG,  SIGWINCH, SIGTSTP,
                            SIGTTIN, SIGTTOU, SIGSTOP, SIGKILL};

void (*cleanUpBeforeTheEnd)() = nullptr;

extern "C" void cleanUpAndEnd(int signal) {
  cleanUpBeforeTheEnd();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

void cleanUpOnEndingSignals(void (*cleanUp)()) {
  cleanUpBeforeTheEnd = cleanUp;
  std::signal(SIGXFSZ, SIG_IGN);
  struct sigaction action {};
  action.sa_handler = cleanUpAndEnd;
  sigfillset(&action.sa_mask);
  for (int signal = 1; signal <= SIGRTMAX; ++signal) {
    if (std::find(others.begin(), others.end(), signal) != others.end()) continue;
    struct sigaction present {};
    bool const isSignal = ::sigaction(signal, nullptr, &present) == 0;
    if (isSignal && present.sa_handler == SIG_DFL) ::sigaction(signal, &action, nullptr);
  }
}

SignalsBlocked::SignalsBlocked() {
  sigset_t all;
  sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, &before_);
}

SignalsBlocked::~SignalsBlocked() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}
