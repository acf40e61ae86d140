// The name that an output takes when it is complete.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Until then, and when it never comes to that, a file or a folder of that name stays as it was.
/// Errors are std::runtime_error with the name in their text.
class OutputName {
 public:
  /// For a file. Throws when there is a file already and `overwrite` is false, or something else.
  OutputName(std::string name, bool overwrite);
  /// For a folder that will hold `files`. Throws like the former, and when there is a folder that
  /// holds anything else: that would be lost.
  OutputName(std::string name, bool overwrite, std::vector<std::string_view> const& files);

  /// The name, or what a link of that name leads to.
  std::string const& path() const noexcept { return path_; }

  /// Gives the name to a complete file or folder beside it, with the mode of what had it before or
  /// else the usual one. What came into being meanwhile is kept as well, unless `overwrite` is true.
  /// A folder that had the name before may have that of `complete` then.
  void give(std::string const& complete) const;

 private:
  OutputName(std::string name, bool overwrite, unsigned kind, unsigned usualMode);

  std::string path_;
  bool overwrite_;
  bool exists_ = false;
  unsigned mode_ = 0;
};
