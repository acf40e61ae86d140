// Decoding on many threads, which only the program does: a host's threads are its own.
#pragma once

#include "osm/PbfRunner.hpp"

/// A PbfRunner that works on this many threads, at least one, or on as many as there are to be had;
/// on one alone where the process may have only so much address space.
OpenStreetMap::PbfRunner decodeInParallel(unsigned threads);
