// Tables to decode into, and a look at all that is in them.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>

#include "osm/decode/TableFiller.hpp"
#include "osm/records.hpp"

struct Tables {
  OpenStreetMap::RecordStorage storage;
  OpenStreetMap::NodeTable nodes;
  OpenStreetMap::WayTable ways;
  OpenStreetMap::RelationTable relations;
  OpenStreetMap::TableFiller filler{storage, nodes, ways, relations};

  /// Ends the process when something is in them that must not be.
  void check() const {
    for (auto const& node : nodes) {
      require(std::abs(node.first) <= 90 && std::abs(node.second) <= 180);
      require(nodes.find(node.id) == &node);
      checkTags(node.tags);
    }
    for (auto const& way : ways) {
      require(ways.find(way.id) == &way);
      checkTags(way.tags);
    }
    for (auto const& relation : relations) {
      require(relations.find(relation.id) == &relation);
      for (auto const& member : relation.members) require(isWellFormed(*member.role));
      checkTags(relation.tags);
    }
  }

 private:
  static void require(bool holds) {
    if (!holds) std::abort();
  }
  static void checkTags(OpenStreetMap::Tags const& tags) {
    for (auto const& [key, value] : tags) {
      require(isWellFormed(key) && isWellFormed(value));
      require(&tags.at(key) == &value);  // each key once
    }
  }
  static bool isWellFormed(std::u16string const& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      bool const lead = (text[i] & 0xFC00) == 0xD800;
      bool const trail = (text[i] & 0xFC00) == 0xDC00;
      if (trail || (lead && (++i == text.size() || (text[i] & 0xFC00) != 0xDC00))) return false;
    }
    return true;
  }
};
