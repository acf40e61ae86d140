// Writes bytes to an open file.
#pragma once

#include <string>
#include <string_view>

class BufferedFile {
 public:
  /// Takes the descriptor over, but never closes standard output. `name` is for messages.
  BufferedFile(int descriptor, std::string name);
  BufferedFile(BufferedFile const&) = delete;
  BufferedFile& operator=(BufferedFile const&) = delete;
  ~BufferedFile();

  /// Both throw std::runtime_error, with the name in its text, when the disk is full or something
  /// else fails.
  void write(std::string_view bytes);
  /// Writes what is left and closes; nothing can be written any more.
  void close();

  int descriptor() const noexcept { return descriptor_; }

 private:
  void flush();

  int descriptor_;
  std::string name_;
  std::string buffer_;
};
