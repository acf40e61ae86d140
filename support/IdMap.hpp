// The hash tables of the import: open addressing, so that a lookup is one step into memory.
#pragma once

#include <tsl/robin_map.h>
#include <tsl/robin_set.h>

#include <cstdint>

#include "support/IdHash.hpp"
#include "support/ModelId.hpp"

namespace support {

/// Keyed by OSM ids.
template <class Value>
using IdMap = tsl::robin_map<std::int64_t, Value, IdHash>;
using IdSet = tsl::robin_set<std::int64_t, IdHash>;

/// Keyed by ids of the model.
template <class Value>
using ModelIdMap = tsl::robin_map<ModelId, Value, IdHash>;

}  // namespace support
