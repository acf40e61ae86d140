#include "cli/ProgressLine.hpp"

#include <unistd.h>

#include <iostream>

using namespace std::chrono_literals;
using support::Stage;

ProgressLine::ProgressLine(bool enabled)
    : enabled_(enabled && ::isatty(STDERR_FILENO) == 1), next_(Clock::now() + 500ms) {}

void ProgressLine::show(Stage stage, std::uint64_t done, std::uint64_t total) {
  constexpr std::uint64_t mebibyte = 1024 * 1024;
  // Once there is a line, it always says what is being done.
  bool const isOther = shown_ && *shown_ != stage;
  if (!enabled_ || (!isOther && !isDue())) return;
  shown_ = stage;
  std::cerr << "\r\033[K" << support::nameOf(stage);
  if (total != 0) {
    std::cerr << ' ' << 100 * done / total << " %";
  } else if (stage == Stage::reading) {
    std::cerr << ' ' << done / mebibyte << " MiB";
  }
  std::cerr << std::flush;
}

void ProgressLine::wipe() {
  if (shown_) std::cerr << "\r\033[K" << std::flush;
  shown_.reset();
}

bool ProgressLine::isDue() {
  auto const now = Clock::now();
  if (now < next_) return false;
  next_ = now + 100ms;
  return true;
}
