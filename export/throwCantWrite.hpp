// The error of every output that can't be written.
#pragma once

#include <string>

/// Throws std::runtime_error: the name, "can't write" and the reason that `errno` gives.
[[noreturn]] void throwCantWrite(std::string const& name);
