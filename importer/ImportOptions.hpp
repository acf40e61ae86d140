// What the caller of an import chooses.
#pragma once

#include <string>
#include <vector>

#include "tags/oneway.hpp"

/// Which roads the chaining joins where they merely continue one another.
enum class Joining {
  all,
  compatible,  ///< those that agree in all that is exported, so that nothing is lost
  none,
};

/// The network as a host gets it, unless something else is said.
struct ImportOptions {
  Joining joining = Joining::all;
  OneWays oneWays = OneWays::tagged;
  /// The keys of the tags that are exported, next to "highway" and "name"; UTF-8.
  std::vector<std::string> tags = {};
  /// The keys of others that the output makes something of. They count like exported ones where
  /// roads are joined.
  std::vector<std::string> usedTags = {};
  /// Whether the relations that restrict turns are read, for `mapRestrictions`.
  bool restrictions = false;
  /// Whether the nodes under the ways stay in the reader when the roads have been made of them, for
  /// a report or an exchange format: they take a fifth of the memory.
  bool keepsNodes = true;
  /// The keys of yet others that are kept, for what may be written later. Joining does not look at
  /// them.
  std::vector<std::string> keptTags = {};
};
