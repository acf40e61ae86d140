// An output that is there whole or not at all.
#pragma once

#include <string>
#include <string_view>

/// Writes beside the wanted name and takes that name when complete; until then, and when anything
/// goes wrong or the program is interrupted, a file of that name stays as it was. Standard output
/// ("-"), devices and pipes are written to as they are.
class OutputFile {
 public:
  /// Throws std::runtime_error, with the name in its text, when the file can't be made, or exists
  /// and `overwrite` is false.
  OutputFile(std::string name, bool overwrite);
  OutputFile(OutputFile const&) = delete;
  OutputFile& operator=(OutputFile const&) = delete;
  ~OutputFile();

  /// Both throw std::runtime_error when the disk is full or something else fails.
  void write(std::string_view bytes);
  void commit();

 private:
  bool takeName() const;
  void flush();
  [[noreturn]] void fail() const;

  std::string name_;
  bool overwrite_;
  unsigned mode_ = 0;
  int descriptor_ = -1;
  std::string temporary_;  // empty where the output is written to as it is
  std::string buffer_;
};
