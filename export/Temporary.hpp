// What must not outlive the program unless it is complete.
#pragma once

#include <string>

/// An unfinished file, or a folder of unfinished files. What still has its name in the end is
/// removed.
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
  /// An open descriptor of the folder, which stays its own.
  int folder() const noexcept { return folder_; }

  /// For a program that ends without destructors: removes all that are unfinished. Does nothing
  /// that a signal handler may not.
  static void removeAll() noexcept;

 private:
  void take(std::string&& path) noexcept;

  std::string path_;
  int folder_ = -1;
};
