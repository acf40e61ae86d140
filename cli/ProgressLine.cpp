#include "cli/ProgressLine.hpp"

#include <unistd.h>

#include <iostream>

using namespace std::chrono_literals;

ProgressLine::ProgressLine(bool enabled)
    : enabled_(enabled && ::isatty(STDERR_FILENO) == 1), next_(Clock::now() + 500ms) {}

ProgressLine::~ProgressLine() {
  if (shown_) std::cerr << "\r\033[K" << std::flush;
}

void ProgressLine::reading(std::uint64_t bytesRead, std::uint64_t fileSize) {
  if (!enabled_ || fileSize == 0) return;
  bool const done = bytesRead >= fileSize;
  if (done ? !shown_ : Clock::now() < next_) return;
  next_ = Clock::now() + 100ms;
  shown_ = true;
  if (done) {
    std::cerr << "\r\033[Kbuilding the network" << std::flush;
  } else {
    std::cerr << "\r\033[Kreading " << 100 * bytesRead / fileSize << " %" << std::flush;
  }
}
