#include "tests/failures/injected.hpp"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>

// glibc's own, under the names that it keeps for those who put theirs before them.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

std::size_t failing = 0;
bool failsFromThenOn = false;
std::size_t calls = 0;
bool failed = false;
std::ptrdiff_t inUse = 0;
injected::Reading behaviour;
std::size_t readCalls = 0;

bool mayAllocate() {
  ++calls;
  if (failing == 0 || calls < failing || (calls > failing && !failsFromThenOn)) return true;
  failed = true;
  errno = ENOMEM;
  return false;
}

void* counted(void* memory) {
  if (memory != nullptr) ++inUse;
  return memory;
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) {
  return mayAllocate() ? counted(__libc_malloc(size)) : nullptr;
}
void* calloc(std::size_t count, std::size_t size) {
  return mayAllocate() ? counted(__libc_calloc(count, size)) : nullptr;
}
void* realloc(void* memory, std::size_t size) {
  if (memory == nullptr) return malloc(size);
  return mayAllocate() ? __libc_realloc(memory, size) : nullptr;
}
void* memalign(std::size_t alignment, std::size_t size) {
  return mayAllocate() ? counted(__libc_memalign(alignment, size)) : nullptr;
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  *memory = memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}
void free(void* memory) {
  if (memory != nullptr) --inUse;
  __libc_free(memory);
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  ++readCalls;
  if (readCalls == behaviour.failingCall) {
    errno = EIO;
    return -1;
  }
  if (behaviour.interrupted && readCalls % 2 == 1) {
    errno = EINTR;
    return -1;
  }
  if (behaviour.largest != 0 && size > behaviour.largest) size = behaviour.largest;
  return syscall(SYS_read, descriptor, buffer, size);
}
}

namespace injected {

void failAllocation(std::size_t n, Mode mode) {
  failing = n;
  failsFromThenOn = mode == Mode::fromThenOn;
  calls = 0;
  if (n != 0) failed = false;
}
bool allocationFailed() {
  return failed;
}
std::ptrdiff_t piecesInUse() {
  return inUse;
}

void setReading(Reading reading) {
  behaviour = reading;
  readCalls = 0;
}

}  // namespace injected
