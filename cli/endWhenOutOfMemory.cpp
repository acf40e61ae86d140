#include "cli/endWhenOutOfMemory.hpp"

#ifdef OSM2ROADNET_MIMALLOC

#include <mimalloc.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string_view>

#include "export/Temporary.hpp"
#include "support/printable.hpp"

namespace {

void say(std::string_view text) noexcept {
  // Nothing can be done if it can't be said.
  [[maybe_unused]] ssize_t const written = ::write(STDERR_FILENO, text.data(), text.size());
}

// Must not allocate.
void end(int error, void* message) {
  if (error != ENOMEM && error != EOVERFLOW) return;
  static std::atomic_flag isEnding;
  while (isEnding.test_and_set()) ::pause();  // another thread is at it
  Temporary::removeAll();
  if (::isatty(STDERR_FILENO) == 1) say("\r\033[K");  // there may be a ProgressLine
  say(*static_cast<std::string const*>(message));
  ::_exit(1);
}

}  // namespace

// Throwing is no choice: the operator new of mimalloc, which is C, aborts, and so does GDAL; some
// of the libraries behind it do not even look at what malloc returns.
void endWhenOutOfMemory(std::string const& input) {
  static std::string message;
  message = "osm2roadnet: " + support::printable(input) + ": out of memory\n";
  mi_register_error(end, &message);
}

#else

void endWhenOutOfMemory(std::string const&) {}

#endif
