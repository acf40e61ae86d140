// Threads that take no signals.
#pragma once

#include <csignal>

/// As long as it lives, threads that this one starts take no signals: those are for others.
class NoSignals {
 public:
  NoSignals() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  NoSignals(NoSignals const&) = delete;
  NoSignals& operator=(NoSignals const&) = delete;
  ~NoSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};
