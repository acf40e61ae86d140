// Holding Python's global lock and doing without it, also while the process ends.
#pragma once

#include <nanobind/nanobind.h>

/// Where Python ends, whoever still wants the GIL is ended where it stands, which C++ does not
/// survive. Therefore a thread that comes for the GIL by one of the classes below once the process
/// ends sleeps until that is over; only the one that ends it goes on.
namespace gil {

/// Called by the thread that ends the process, with the GIL.
void processEnds();
bool doesProcessEnd() noexcept;

/// Gives up the GIL for as long as it lives.
class Released {
 public:
  Released() : thread_(PyEval_SaveThread()) {}
  Released(Released const&) = delete;
  Released& operator=(Released const&) = delete;
  ~Released();

 private:
  PyThreadState* thread_;
};

/// Has the GIL for as long as it lives.
class Held {
 public:
  Held();
  Held(Held const&) = delete;
  Held& operator=(Held const&) = delete;
  ~Held() { PyGILState_Release(state_); }

 private:
  PyGILState_STATE state_;
};

}  // namespace gil
