// An output file that is there whole or not at all.
#pragma once

#include <optional>
#include <string>

#include "export/BufferedFile.hpp"
#include "export/OutputName.hpp"
#include "export/Temporary.hpp"

/// Is written beside the wanted name and takes it when complete. Standard output ("-"), devices and
/// pipes are written to as they are. All errors are std::runtime_error with the name in their text.
class OutputFile {
 public:
  /// Throws when the file can't be made, or exists and `overwrite` is false.
  OutputFile(std::string const& name, bool overwrite);

  BufferedFile& file() { return *file_; }
  /// Writes what is left; then only the name is missing.
  void complete();
  void commit();

 private:
  std::optional<OutputName> name_;  // none for what is written to as it is
  Temporary temporary_;
  std::optional<BufferedFile> file_;
};
