// A file that is nowhere but in memory.
#pragma once

#include <cstddef>
#include <string>

/// For what reads and writes descriptors. Whatever fails is std::bad_alloc: there is no memory, or
/// no more descriptors to be had.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(MemoryFile const&) = delete;
  MemoryFile& operator=(MemoryFile const&) = delete;
  ~MemoryFile();

  int descriptor() const noexcept { return descriptor_; }
  /// Another descriptor of the file, which is the caller's.
  int duplicate() const;

  /// Fills it; then it is read from the beginning.
  void fill(char const* bytes, std::size_t size);
  /// All of it, wherever the descriptor stands.
  std::string content() const;

 private:
  int descriptor_;
};
