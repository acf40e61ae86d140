// The open input file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace OpenStreetMap {

struct FileHandler {
  int descriptor;
  std::uint64_t size;  ///< in bytes, what was left to read when it was opened; 0 for a stream,
                       ///< whose size nobody knows
  std::string name;    ///< UTF-8, for messages
};

/// Closes the file.
struct FileHandlerDeleter {
  void operator()(FileHandler* file) const noexcept;
};

using FileHandle = std::unique_ptr<FileHandler, FileHandlerDeleter>;

/// Opens a regular file for reading. `path` is UTF-16. Throws ReadError with the reason: there is
/// no such file, it may not be read, it is a directory or another special file, the path holds a
/// NUL or is not well-formed UTF-16 (such a path never opens some other file).
FileHandle openFile(std::u16string const& path);

/// The same with a path of whatever bytes; a message shows them as well as it can.
FileHandle openFile(std::string const& path);

/// For whatever is open already, a pipe for example, which will be read from where it stands. The
/// descriptor stays the caller's. `name`, UTF-8, is for messages. Throws ReadError.
FileHandle useOpenFile(int descriptor, std::string const& name);

}  // namespace OpenStreetMap
