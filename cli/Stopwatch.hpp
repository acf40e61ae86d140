// Where the time of a run goes.
#pragma once

#include <chrono>
#include <string>

/// Runs from its making on.
class Stopwatch {
 public:
  /// What has passed since the last call, or the beginning, was spent on this stage.
  void finished(char const* stage);
  /// All that has passed until now and, of it, what each stage took, in seconds:
  /// "3.505 s (reading 1.101, network 2.399)".
  std::string text() const;

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point const start_ = Clock::now();
  Clock::time_point last_ = start_;
  std::string stages_;
};
