// What workers do with parts of a file, for the Python package.
#pragma once

#include <nanobind/nanobind.h>

/// Adds the functions to the compiled module, as its `parts`. All give up the GIL.
void bindParts(nanobind::module_& module);
