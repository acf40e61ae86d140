#include "cli/ProgressLine.hpp"

#include <unistd.h>

#include <iostream>

using namespace std::chrono_literals;

ProgressLine::ProgressLine(bool enabled)
    : enabled_(enabled && ::isatty(STDERR_FILENO) == 1), next_(Clock::now() + 500ms) {}

void ProgressLine::reading(std::uint64_t bytesRead, std::uint64_t fileSize) {
  constexpr std::uint64_t mebibyte = 1024 * 1024;
  if (!enabled_) return;
  if (fileSize != 0 && bytesRead >= fileSize) {
    if (shown_) show("building the network");
  } else if (isDue()) {
    show("reading " + (fileSize == 0 ? std::to_string(bytesRead / mebibyte) + " MiB"
                                     : std::to_string(100 * bytesRead / fileSize) + " %"));
  }
}

void ProgressLine::writing(std::size_t done, std::size_t total) {
  constexpr std::size_t between = 256;  // looking at the clock costs more than writing a node
  if (!enabled_ || done % between != 0 || !isDue()) return;
  show("writing " + std::to_string(100 * done / total) + " %");
}

void ProgressLine::wipe() {
  if (shown_) std::cerr << "\r\033[K" << std::flush;
  shown_ = false;
}

bool ProgressLine::isDue() {
  auto const now = Clock::now();
  if (now < next_) return false;
  next_ = now + 100ms;
  return true;
}

void ProgressLine::show(std::string const& text) {
  shown_ = true;
  std::cerr << "\r\033[K" << text << std::flush;
}
