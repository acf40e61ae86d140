// How far a long import has come.
#pragma once

#include <chrono>
#include <cstdint>

/// One line on standard error that is written over again and again, and wiped in the end. Says
/// nothing unless `enabled` and standard error is a terminal, nor in the first half second.
class ProgressLine {
 public:
  explicit ProgressLine(bool enabled);
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;
  ~ProgressLine();

  void reading(std::uint64_t bytesRead, std::uint64_t fileSize);

 private:
  using Clock = std::chrono::steady_clock;

  bool enabled_;
  bool shown_ = false;
  Clock::time_point next_;
};
