// How far a long import has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "support/Progress.hpp"

/// One line on standard error that is written over again and again, and wiped in the end. Says
/// nothing unless `enabled` and standard error is a terminal, nor in the first half second.
class ProgressLine {
 public:
  explicit ProgressLine(bool enabled);
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;
  ~ProgressLine() { wipe(); }

  void show(support::Stage stage, std::uint64_t done, std::uint64_t total);  ///< a Progress
  void wipe();

 private:
  using Clock = std::chrono::steady_clock;

  bool isDue();

  bool enabled_;
  std::optional<support::Stage> shown_;
  Clock::time_point next_;
};
