#include "export/OutputFolder.hpp"

#include <fcntl.h>

#include <filesystem>

OutputFolder::OutputFolder(std::string const& name, bool overwrite,
                           std::vector<std::string_view> const& files)
    : name_(files.empty() ? OutputName(name, overwrite) : OutputName(name, overwrite, files)),
      isOneFile_(files.empty()) {
  temporary_.makeFolder(name_.path());
}

std::string OutputFolder::path(std::string_view file) const {
  std::filesystem::path const folder(temporary_.path());
  return isOneFile_ ? folder / std::filesystem::path(name_.path()).filename() : folder / file;
}

std::string OutputFolder::shownName(std::string_view file) const {
  std::filesystem::path const name(name_.path());
  return file.empty() ? name : name / file;
}

BufferedFile OutputFolder::make(std::string_view file) const {
  constexpr mode_t usualMode = 0666;
  int const descriptor =
      ::open(path(file).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualMode);
  if (descriptor < 0) throwCantWrite(shownName(file));
  return {descriptor, shownName(file)};
}

void OutputFolder::commit() {
  name_.give(isOneFile_ ? path() : temporary_.path());
}
