// Decoding on many threads, which only the program does: a host's threads are its own.
#pragma once

#include "osm/PbfRunner.hpp"

/// A PbfRunner that works on this many threads, at least one.
OpenStreetMap::PbfRunner decodeInParallel(unsigned threads);
