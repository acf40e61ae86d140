// An output that several files make up, or one file that a library writes by its name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/BufferedFile.hpp"
#include "export/OutputName.hpp"
#include "export/Temporary.hpp"

/// The files are written to a folder beside the wanted name; that folder, or the one file in it,
/// takes the name when complete. All errors are std::runtime_error with the name in their text.
class OutputFolder {
 public:
  /// A folder of `files`, or with none of these a file of that name. Throws when it can't be made,
  /// exists and `overwrite` is false, or exists and holds anything else.
  OutputFolder(std::string const& name, bool overwrite, std::vector<std::string_view> const& files);

  /// Where to write the file of that name, or the one file.
  std::string path(std::string_view file = "") const;
  /// The same for people.
  std::string shownName(std::string_view file = "") const;
  /// Makes the file of that name.
  BufferedFile make(std::string_view file) const;

  void commit();

 private:
  OutputName name_;
  bool isOneFile_;
  Temporary temporary_;
};
