// Failures on demand: this program's own malloc, free and read, which everything in the process
// uses, the libraries included.
#pragma once

#include <cstddef>

namespace injected {

enum class Mode { once, fromThenOn };

/// The `n`-th allocation from now on fails (counted from 1), and all after it or not; 0 for none.
void failAllocation(std::size_t n, Mode mode);
/// Whether one failed since an allocation was last chosen to fail.
bool allocationFailed();
/// How many pieces of memory are in use.
std::ptrdiff_t piecesInUse();

/// What reading files does from now on.
struct Reading {
  std::size_t largest = 0;      ///< bytes at a time; 0 for as many as are asked for
  bool interrupted = false;     ///< every other call is interrupted by a signal
  std::size_t failingCall = 0;  ///< which call ends in an input/output error; 0 for none
};
void setReading(Reading reading);

}  // namespace injected
