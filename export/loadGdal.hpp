// The way to the library of outputs that GDAL writes.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "export/OutputFolder.hpp"

/// Loads the library and finds a function that it exports. Throws std::runtime_error.
void* loadGdalFunction(char const* name);

/// Of a file in the folder, as GDAL takes it for nothing but a name.
std::string gdalPath(OutputFolder const& folder, std::string_view file);

/// GDAL's messages name no file, or one by the name that it has only while it is unfinished: puts
/// the output's name into the text of a std::runtime_error of `action`.
template <class Action>
auto namingOutput(std::string const& output, Action const& action) {
  try {
    return action();
  } catch (std::runtime_error const& error) {
    throw std::runtime_error(output + ": can't write: " + error.what());
  }
}
