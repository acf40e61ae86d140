// An output that is made of files which are written by their names.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/OutputName.hpp"
#include "export/Temporary.hpp"

/// The files are written to a folder beside the wanted name; that folder, or the only file in it,
/// takes the name when complete. All errors are std::runtime_error with the name in their text.
class OutputFolder {
 public:
  enum class Result { folder, onlyFile };

  /// `files` are the names of those that will be written. Throws when the folder can't be made, or
  /// the output exists and `overwrite` is false, or is a folder that holds anything else.
  OutputFolder(std::string const& name, bool overwrite, std::span<std::string_view const> files,
               Result result);

  /// Where to write one of the files.
  std::string path(std::string_view file) const { return temporary_.path() + '/' += file; }
  /// Makes one of the files.
  BufferedFile make(std::string_view file) const;
  /// The name of the output, for people.
  std::string const& name() const noexcept { return name_.name(); }

  void commit();

 private:
  OutputName name_;
  std::string onlyFile_;  // empty where the result is the folder
  Temporary temporary_;
};
