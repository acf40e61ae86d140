// The error of every output that can't be written.
#pragma once

#include <string>

/// Throws std::system_error with `errno`: the name, "can't write" and the reason that it gives.
[[noreturn]] void throwCantWrite(std::string const& name);
