// Decoding on many threads, for those doors that start threads: a host's are its own.
#pragma once

#include "osm/PbfRunner.hpp"

/// One a processor, but no more than help: with many, unpacking is no longer what takes the time,
/// and each has its buffers.
unsigned usefulThreads();

/// A PbfRunner that works on this many threads, at least one, or on as many as there are to be had;
/// on one alone where the process may have only so much address space.
OpenStreetMap::PbfRunner decodeInParallel(unsigned threads);
