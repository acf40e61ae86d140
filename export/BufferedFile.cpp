#include "export/BufferedFile.hpp"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "export/throwCantWrite.hpp"

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;

}  // namespace

BufferedFile::BufferedFile(int descriptor, std::string name)
    : descriptor_(descriptor), name_(std::move(name)) {
  buffer_.reserve(bufferSize);
}

BufferedFile::~BufferedFile() {
  if (descriptor_ > STDOUT_FILENO) ::close(descriptor_);
}

void BufferedFile::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > bufferSize) flush();
  buffer_ += bytes;
}

void BufferedFile::close() {
  flush();
  int const descriptor = std::exchange(descriptor_, -1);
  if (descriptor > STDOUT_FILENO && ::close(descriptor) != 0) throwCantWrite(name_);
}

void BufferedFile::flush() {
  char const* rest = buffer_.data();
  std::size_t size = buffer_.size();
  while (size > 0) {
    ssize_t const count = ::write(descriptor_, rest, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throwCantWrite(name_);
    rest += count;
    size -= static_cast<std::size_t>(count);
  }
  buffer_.clear();
}
