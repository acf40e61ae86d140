#include "tests/failures/injected.hpp"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

// glibc's own, under the names that it keeps for those who put theirs before them.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

injected::Plan plan;
std::size_t allocations = 0;
std::size_t reads = 0;
bool failed = false;
std::ptrdiff_t inUse = 0;

bool mayAllocate() {
  std::size_t const first = plan.failingAllocation;
  ++allocations;
  if (first == 0 || allocations < first || (allocations > first && !plan.allAfterItToo))
    return true;
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
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return mayAllocate() ? counted(__libc_memalign(alignment, size)) : nullptr;
}
void free(void* memory) {
  if (memory != nullptr) --inUse;
  __libc_free(memory);
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  ++reads;
  if (reads == plan.failingRead || (plan.interrupted && reads % 2 == 1)) {
    errno = reads == plan.failingRead ? EIO : EINTR;
    return -1;
  }
  if (plan.largestRead != 0 && size > plan.largestRead) size = plan.largestRead;
  return syscall(SYS_read, descriptor, buffer, size);
}
}

namespace injected {

bool follow(Plan const& next) {
  plan = next;
  allocations = reads = 0;
  return std::exchange(failed, false);
}

std::ptrdiff_t piecesInUse() {
  return inUse;
}

}  // namespace injected
