// Which tags are exported.
#pragma once

#include <string>
#include <vector>

/// The keys that most networks need.
std::vector<std::string> usualTags();

/// The keys without white space around them and without empty ones. Throws std::invalid_argument
/// for one that stands there twice or is always exported: each is a column of its own.
std::vector<std::string> checkedTags(std::vector<std::string> keys);
