// Failures on demand: this program's own malloc, free and read, which everything in the process
// uses, the libraries included.
#pragma once

#include <cstddef>

namespace injected {

/// What happens to the calls from now on, which are counted from 1; 0 stands for none of them.
struct Plan {
  std::size_t failingAllocation = 0;
  bool allAfterItToo = false;
  std::size_t failingRead = 0;  ///< ends in an input/output error
  std::size_t largestRead = 0;  ///< bytes at a time; 0 for as many as are asked for
  bool interrupted = false;     ///< every other read is interrupted by a signal
};

/// Returns whether an allocation failed by the plan that was followed before.
bool follow(Plan const& plan);
/// How many pieces of memory are in use.
std::ptrdiff_t piecesInUse();

}  // namespace injected
