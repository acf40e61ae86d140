// Who takes the blobs of a PBF file through their steps.
#pragma once

#include <functional>

namespace OpenStreetMap {

class PbfFile;

/// Reads, unpacks and decodes all blobs of a file, as PbfFile.hpp says, and returns when all is
/// done or throws what a blob throws. The reader's own does so on its caller's thread, blob by
/// blob; one that uses more threads makes no difference but in time.
using PbfRunner = std::function<void(PbfFile& file)>;

}  // namespace OpenStreetMap
