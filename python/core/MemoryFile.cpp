#include "python/core/MemoryFile.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>

namespace {

// The next part; only a signal is no failure.
template <class Step>
std::size_t step(Step const& part) {
  ssize_t count = 0;
  do {
    count = part();
  } while (count < 0 && errno == EINTR);
  if (count <= 0) throw std::bad_alloc();
  return static_cast<std::size_t>(count);
}

}  // namespace

MemoryFile::MemoryFile() : descriptor_(::memfd_create("osm2roadnet", MFD_CLOEXEC)) {
  if (descriptor_ < 0) throw std::bad_alloc();
}

MemoryFile::~MemoryFile() {
  ::close(descriptor_);
}

int MemoryFile::duplicate() const {
  int const other = ::fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
  if (other < 0) throw std::bad_alloc();
  return other;
}

void MemoryFile::fill(char const* bytes, std::size_t size) {
  for (std::size_t done = 0; done < size;) {
    done += step([&] { return ::write(descriptor_, bytes + done, size - done); });
  }
  ::lseek(descriptor_, 0, SEEK_SET);
}

std::string MemoryFile::content() const {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) throw std::bad_alloc();
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  for (std::size_t done = 0; done < bytes.size();) {
    done += step([&] {
      return ::pread(descriptor_, bytes.data() + done, bytes.size() - done,
                     static_cast<off_t>(done));
    });
  }
  return bytes;
}
