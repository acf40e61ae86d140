// Tables to decode into, and a look at all that is in them.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>

#include "osm/decode/TableFiller.hpp"
#include "osm/records.hpp"
#include "support/ustring.hpp"

struct Tables {
  OpenStreetMap::RecordStorage storage;
  OpenStreetMap::NodeTable nodes;
  OpenStreetMap::WayTable ways;
  OpenStreetMap::RelationTable relations;
  OpenStreetMap::TableFiller filler{storage, nodes, ways, relations};

  /// Ends the process when something is in them that must not be.
  void check() const noexcept {
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
      for (auto const& member : relation.members) checkText(*member.role);
      checkTags(relation.tags);
    }
  }

 private:
  static void require(bool holds) {
    if (!holds) std::abort();
  }
  static void checkTags(OpenStreetMap::Tags const& tags) {
    for (auto const& [key, value] : tags) {
      checkText(key);
      checkText(value);
      require(&tags.at(key) == &value);  // each key once
    }
  }
  static void checkText(std::u16string const& text) {
    static support::codecvt_ustring_to_string const utf8("UTF-8", 1);
    utf8.do_convert(text.data(), text.size());  // throws when it is ill-formed
  }
};
