// What happens when there is no memory left.
#pragma once

#include <string>

/// From now on an allocation that fails, in whatever library, ends the program with exit status 1:
/// what is unfinished is removed, and one line on standard error names the input. Does nothing in a
/// program without mimalloc, whose allocations throw std::bad_alloc.
void endWhenOutOfMemory(std::string const& input);
