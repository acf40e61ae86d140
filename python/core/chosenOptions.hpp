// What a caller of the Python package chooses.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "importer/ImportOptions.hpp"

/// From the names that the command line has for the choices; without tags those that most networks
/// need. Throws std::invalid_argument.
ImportOptions optionsOf(std::string const& join, std::string const& oneway,
                        std::optional<std::vector<std::string>> tags);
