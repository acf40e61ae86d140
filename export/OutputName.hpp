// The name that an output takes when it is complete.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Until then, and when it never comes to that, a file or a folder of that name stays as it was.
/// Errors are std::runtime_error with the name in their text.
class OutputName {
 public:
  /// For a file. Throws when there is a file already and `overwrite` is false, or something else.
  OutputName(std::string name, bool overwrite);
  /// For a folder of `files`. An empty one may be there already. Throws like the former, and when
  /// there is a folder that holds anything else, which would be lost, or is the current one.
  OutputName(std::string const& name, bool overwrite, std::span<std::string_view const> files);

  /// The name as it was given, for people.
  std::string const& name() const noexcept { return name_; }
  /// Where it is: what a link of that name leads to.
  std::string const& path() const noexcept { return path_; }

  /// Gives an open file or folder, or a file in an open folder of this user alone, the permissions
  /// of what had the name before, or else those that a plainly made one would have.
  void setMode(int descriptor, char const* fileInIt = nullptr) const;
  /// Gives the name to a complete file or folder beside it. A folder that had it before has the
  /// name `complete` then. Throws, and changes nothing, when something came into being meanwhile
  /// that would be lost.
  void give(std::string const& complete) const;

 private:
  OutputName(std::string name, bool overwrite, unsigned kind, unsigned usualMode);
  void giveToFile(char const* complete) const;
  void giveToFolder(char const* complete) const;
  struct OtherFile;
  OtherFile otherFileIn(char const* folder) const;
  [[noreturn]] void failBecauseItExists() const;
  [[noreturn]] void failBecauseOf(OtherFile const& other) const;
  [[noreturn]] void fail(std::string const& reason) const;

  std::string name_;
  std::string path_;
  bool overwrite_;
  std::vector<std::string_view> files_;  // of a folder
  bool exists_ = false;
  unsigned mode_ = 0;
};
