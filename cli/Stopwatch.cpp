#include "cli/Stopwatch.hpp"

#include <iomanip>
#include <sstream>

namespace {

std::string seconds(std::chrono::duration<double> duration) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(3) << duration.count();
  return text.str();
}

}  // namespace

void Stopwatch::finished(char const* stage) {
  auto const now = Clock::now();
  stages_ += (stages_.empty() ? "" : ", ") + std::string(stage) + ' ' + seconds(now - last_);
  last_ = now;
}

std::string Stopwatch::text() const {
  return seconds(Clock::now() - start_) + " s (" + stages_ + ')';
}
