#include "export/throwCantWrite.hpp"

#include <cerrno>
#include <stdexcept>
#include <system_error>

void throwCantWrite(std::string const& name) {
  throw std::runtime_error(name + ": can't write: " + std::generic_category().message(errno));
}
