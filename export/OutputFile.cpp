#include "export/OutputFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "export/throwCantWrite.hpp"

OutputFile::OutputFile(std::string const& name, bool overwrite) {
  struct stat status {};
  if (name == "-") {
    file_.emplace(STDOUT_FILENO, "standard output");
  } else if (::stat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode) &&
             !S_ISDIR(status.st_mode)) {
    int const descriptor = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) throwCantWrite(name);
    file_.emplace(descriptor, name);
  } else {
    name_.emplace(name, overwrite);
    file_.emplace(temporary_.makeFile(name_->path()), name);
  }
}

void OutputFile::complete() {
  if (name_) name_->setMode(file_->descriptor());
  file_->close();
}

void OutputFile::commit() {
  if (name_) name_->give(temporary_.path());
}
