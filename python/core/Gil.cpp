#include "python/core/Gil.hpp"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace std::chrono_literals;

namespace gil {
namespace {

std::atomic<std::thread::id> endingThread{};
std::atomic<int> waitingThreads{0};

// One that waits for the GIL: either it is counted before the process begins to end, and gets it,
// or it sees that the process ends.
class Waiting {
 public:
  Waiting() {
    ++waitingThreads;
    if (!doesProcessEnd() || endingThread.load() == std::this_thread::get_id()) return;
    --waitingThreads;
    for (;;) ::pause();
  }
  Waiting(Waiting const&) = delete;
  Waiting& operator=(Waiting const&) = delete;
  ~Waiting() { --waitingThreads; }
};

}  // namespace

void processEnds() {
  endingThread = std::this_thread::get_id();
  Released const others;
  // They get their turn within some milliseconds. Only after a fork is there nobody to wait for
  // although somebody was counted.
  for (int i = 0; i < 500 && waitingThreads > 0; ++i) std::this_thread::sleep_for(1ms);
}

bool doesProcessEnd() noexcept {
  return endingThread.load() != std::thread::id{};
}

Released::~Released() {
  Waiting const turn;
  PyEval_RestoreThread(thread_);
}

Held::Held() {
  Waiting const turn;
  state_ = PyGILState_Ensure();
}

}  // namespace gil
