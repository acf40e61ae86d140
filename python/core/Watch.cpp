#include "python/core/Watch.hpp"

#include <string_view>
#include <utility>

#include "python/core/Gil.hpp"

namespace nb = nanobind;
using namespace std::chrono_literals;

// Python handles signals in its main thread alone; the others need not stop to ask.
Watch::Watch(nb::object progress) : progress_(std::move(progress)) {
  nb::module_ const threading = nb::module_::import_("threading");
  isMain_ = threading.attr("current_thread")().is(threading.attr("main_thread")());
}

void Watch::handleSignals() const {
  if (!isMain_) return;
  gil::Held const held;
  if (PyErr_CheckSignals() != 0) throw nb::python_error();
}

void Watch::operator()(support::Stage stage, std::uint64_t done, std::uint64_t total) {
  if (!isMain_ && progress_.is_none()) return;
  // The last elements may be told of more than once, while something else is done with them.
  std::pair const place{stage, done == total};
  bool const isNewPlace = !progress_.is_none() && place != place_;
  if (!isNewPlace && Clock::now() < next_) return;
  gil::Held const held;
  if (PyErr_CheckSignals() != 0) throw nb::python_error();
  std::string_view const name = support::nameOf(stage);
  if (!progress_.is_none()) progress_(nb::str(name.data(), name.size()), done, total);
  place_ = place;
  next_ = Clock::now() + 20ms;
}
