#include "export/OutputFolder.hpp"

#include <fcntl.h>

#include "export/throwCantWrite.hpp"

OutputFolder::OutputFolder(std::string const& name, bool overwrite,
                           std::span<std::string_view const> files, Result result)
    : name_(result == Result::folder ? OutputName(name, overwrite, files)
                                     : OutputName(name, overwrite)),
      onlyFile_(result == Result::folder ? "" : files.front()) {
  temporary_.makeFolder(name_.path());
}

BufferedFile OutputFolder::make(std::string_view file) const {
  constexpr mode_t usualMode = 0666;
  std::string const shownName = name() + '/' += file;
  int const descriptor = ::openat(temporary_.folder(), std::string(file).c_str(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualMode);
  if (descriptor < 0) throwCantWrite(shownName);
  return {descriptor, shownName};
}

void OutputFolder::commit() {
  if (onlyFile_.empty()) {
    name_.give(temporary_.path());
    // Last: a folder that is not writable could not be removed if anything failed.
    name_.setMode(temporary_.folder());
  } else {
    name_.setMode(temporary_.folder(), onlyFile_.c_str());
    name_.give(path(onlyFile_));
  }
}
