// What Python wants to be told, and asked, while the engine works.
#pragma once

#include <nanobind/nanobind.h>

#include <chrono>
#include <cstdint>

/// Called often, without the GIL, from the one thread that works. Takes the GIL only where a stage
/// begins or ends and some twenty milliseconds after the last time; then signals are handled, as
/// Ctrl-C is, and the callable is called. What either raises is thrown, as nanobind::python_error.
class Watch {
 public:
  /// `progress` is None or a callable(stage, done, total). The GIL must be held.
  explicit Watch(nanobind::object progress);

  void operator()(char const* stage, std::uint64_t done, std::uint64_t total);

 private:
  using Clock = std::chrono::steady_clock;

  nanobind::object progress_;
  bool isNeeded_;
  char const* stage_ = nullptr;
  Clock::time_point next_{};
};
