// What a folder holds.
#pragma once

#include <dirent.h>
#include <unistd.h>

/// Calls `action` with the name of each entry of an open folder, also with "." and "..". Allocates
/// nothing, and calls nothing that a signal handler may not. Returns false, with the reason in
/// `errno`, when the folder can't be read.
template <class Action>
bool forEachEntry(int folder, Action const& action) {
  alignas(dirent64) char entries[4096];
  if (::lseek(folder, 0, SEEK_SET) < 0) return false;
  for (ssize_t size; (size = ::getdents64(folder, entries, sizeof entries)) != 0;) {
    if (size < 0) return false;
    for (ssize_t at = 0; at < size;) {
      auto const* const entry = reinterpret_cast<dirent64 const*>(entries + at);
      action(static_cast<char const*>(entry->d_name));
      at += entry->d_reclen;
    }
  }
  return true;
}
