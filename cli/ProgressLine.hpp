// How far a long import has come.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

/// One line on standard error that is written over again and again, and wiped in the end. Says
/// nothing unless `enabled` and standard error is a terminal, nor in the first half second.
class ProgressLine {
 public:
  explicit ProgressLine(bool enabled);
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;
  ~ProgressLine() { wipe(); }

  void reading(std::uint64_t bytesRead, std::uint64_t fileSize);  ///< see OpenStreetMap::Progress
  void writing(std::size_t done, std::size_t total);
  void wipe();

 private:
  using Clock = std::chrono::steady_clock;

  bool isDue();
  void show(std::string const& text);

  bool enabled_;
  bool shown_ = false;
  Clock::time_point next_;
};
