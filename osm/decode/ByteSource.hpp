// Streams of bytes: the file itself, and what is unpacked from another stream.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace OpenStreetMap {

class ByteSource {
 public:
  ByteSource() = default;
  ByteSource(ByteSource const&) = delete;
  ByteSource& operator=(ByteSource const&) = delete;
  virtual ~ByteSource() = default;

  /// Reads up to `size` bytes (at least one is asked for); fewer do not mean that the end is near,
  /// 0 is the end. Throws DecodeError.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;

  /// Passes over `size` bytes and returns how many there were; fewer only at the end.
  virtual std::size_t skip(std::size_t size) {
    std::vector<char> passed(size);
    return readFully(passed.data(), size);
  }

  /// Reads `size` bytes; fewer only at the end.
  std::size_t readFully(char* buffer, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
      std::size_t const count = read(buffer + done, size - done);
      if (count == 0) break;
      done += count;
    }
    return done;
  }
};

/// Another stream whose first bytes can be looked at before they are read.
class SniffedSource final : public ByteSource {
 public:
  explicit SniffedSource(ByteSource& source)
      : source_(source), size_(source.readFully(head_.data(), head_.size())) {}

  /// The first bytes; all of them when the stream is shorter.
  std::string_view head() const noexcept { return {head_.data(), size_}; }

  std::size_t read(char* buffer, std::size_t size) override {
    if (position_ == size_) return source_.read(buffer, size);
    std::size_t const count = head().copy(buffer, size, position_);
    position_ += count;
    return count;
  }

  std::size_t skip(std::size_t size) override {
    std::size_t const count = std::min(size, size_ - position_);
    position_ += count;
    return count + (count < size ? source_.skip(size - count) : 0);
  }

 private:
  ByteSource& source_;
  std::array<char, 512> head_{};
  std::size_t size_;
  std::size_t position_ = 0;
};

}  // namespace OpenStreetMap
