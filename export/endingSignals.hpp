// Signals that end the program.
#pragma once

#include <csignal>

/// From now on every signal that would end the program calls `cleanUp` first; the program then ends
/// as if by the signal alone. `cleanUp` may do only what a signal handler may. Signals that are
/// ignored or handled already stay so. SIGXFSZ does not end the program any more: a write beyond
/// the file size limit fails like any other.
void cleanUpOnEndingSignals(void (*cleanUp)());

/// Keeps all signals waiting while what they would clean up is not what it should be.
class SignalsBlocked {
 public:
  SignalsBlocked();
  SignalsBlocked(SignalsBlocked const&) = delete;
  SignalsBlocked& operator=(SignalsBlocked const&) = delete;
  ~SignalsBlocked();

 private:
  sigset_t before_;
};
