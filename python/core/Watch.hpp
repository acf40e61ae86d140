// What Python wants to be told, and asked, while the engine works.
#pragma once

#include <nanobind/nanobind.h>

#include <chrono>
#include <cstdint>
#include <utility>

#include "support/Progress.hpp"

/// Called often, without the GIL, from the one thread that works. Some twenty milliseconds after
/// the last time it takes the GIL, handles signals, such as Ctrl-C, and calls the callable, which
/// is also called where a stage begins or ends. What either raises is thrown, as
/// nanobind::python_error.
class Watch {
 public:
  /// `progress` is None or a callable(stage, done, total). The GIL must be held.
  explicit Watch(nanobind::object progress);

  /// Handles signals, if it is for this thread to do so.
  void handleSignals() const;
  void operator()(support::Stage stage, std::uint64_t done, std::uint64_t total);

 private:
  using Clock = std::chrono::steady_clock;

  nanobind::object progress_;
  bool isMain_;
  std::pair<support::Stage, bool> place_{};  // and whether it is the end of the stage
  Clock::time_point next_{};
};
