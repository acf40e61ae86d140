// A finding in words.
#pragma once

#include <string>

#include "report/Finding.hpp"

/// One sentence for a person; UTF-8. `metres` are those of the finding, or the length of its lines.
std::string sentence(Finding const& finding, double metres);
