// What must not outlive the program unless it is complete.
#pragma once

#include <csignal>
#include <string>

/// An unfinished file, or a folder of unfinished files. What still has its name in the end is
/// removed: by the destructor, or when a signal ends the program.
class Temporary {
 public:
  Temporary() = default;  ///< nothing
  Temporary(Temporary const&) = delete;
  Temporary& operator=(Temporary const&) = delete;
  ~Temporary();

  /// Make it beside `name`, for this user alone; called once. The first returns a descriptor to
  /// write to. Both throw std::runtime_error, with the name in its text.
  int makeFile(std::string const& name);
  void makeFolder(std::string const& name);

  std::string const& path() const noexcept { return path_; }

 private:
  void registerPath();

  std::string path_;
};

/// Keeps interrupts off while what they would remove is not, or may not be, what it should be.
class InterruptsBlocked {
 public:
  InterruptsBlocked();
  InterruptsBlocked(InterruptsBlocked const&) = delete;
  InterruptsBlocked& operator=(InterruptsBlocked const&) = delete;
  ~InterruptsBlocked();

 private:
  sigset_t before_;
};
