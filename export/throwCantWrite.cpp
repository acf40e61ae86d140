#include "export/throwCantWrite.hpp"

#include <cerrno>
#include <system_error>

void throwCantWrite(std::string const& name) {
  throw std::system_error(errno, std::generic_category(), name + ": can't write");
}
